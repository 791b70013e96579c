#include "Archives.h"
#include "Designs.h"
#include "Tool.h"

#include "host/exchange/GroupTable.h"
#include "host/exchange/Xlsx.h"

#include <fstream>

namespace zelm::test::tableTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

std::string saidOf(const std::string& csv)
{
    try {
        designOfTable(readCsv("g.csv", csv));
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Table, CsvTakesQuotesLineBreaksAndOtherSeparators)
{
    const SheetTable table = readCsv("t.csv", "\xEF\xBB\xBF"
                                              "a;\"b;c\";\" d\"\r\n\r\n1;\"x \"\"y\"\"\nz\";\n;;end");
    ASSERT_EQ(table.rows.size(), 3u);
    EXPECT_EQ(table.rows[0].cells[1].text, "b;c");
    EXPECT_EQ(table.rows[0].cells[2].text, " d");
    EXPECT_EQ(table.rows[1].number, 3u);
    EXPECT_EQ(table.rows[1].line, 3u);
    EXPECT_EQ(table.rows[1].cells[1].text, "x \"y\"\nz");
    ASSERT_EQ(table.rows[1].cells.size(), 2u);
    EXPECT_EQ(table.rows[2].number, 4u);
    EXPECT_EQ(table.rows[2].line, 5u);
    EXPECT_EQ(table.rows[2].cells.at(0).column, 2u);
    EXPECT_EQ(table.at(table.rows[2], 2, "X"), "t.csv:5: row 4, column C (X)");
}

TEST(Table, MessagesNameRowColumnAndTheNearestName)
{
    struct BadTable {
        const char* csv;
        const char* message;
    };
    const BadTable all[] = {
        {"name\nx\n", "g.csv:1: row 1: there is no column \"block\""},
        {"block,NUM_BRAM\nBram,1\n", "g.csv:1: row 1, column B: no block has an input NUM_BRAM; did you "
                                     "mean NUM_BRAMS"},
        {"block,count,count\n", "column C: count is the head of an earlier column, too"},
        {"block\nBran\n", "g.csv:2: row 2, column A (block): there is no block Bran; did you mean Bram"},
        {"block,MODE\nBram,BLKM37\n", "g.csv:2: row 2, column B (MODE): \"BLKM37\" is no word of MODE; did you mean "
                                      "BLKM36"},
        {"block,PORT_A_CLOCK\nBram,0.8 V\n",
         "row 2, column B (PORT_A_CLOCK): \"0.8 V\" is a voltage, expected a frequency (MHz)"},
        {"block,NUM_DSP\nBram,3\n", "row 2, column B (NUM_DSP): block Bram has no input NUM_DSP"},
        {"block,count\nBram,1.5\n", "row 2, column B (count): expected a whole number"},
        {"block,clock\nBram,core\nClock,\n", "g.csv:2: row 2: no group of Clock is named \"core\""},
        {"block,name\nBram,a\nSelv,b\nBram,a\n", "g.csv:4: row 4: two groups are named \"a\", here and in row 2"},
        {"block\nBram,7\n", "row 2, column B: 7 stands in a column without a head"},
        {"block\n\"Bram\nx", "g.csv:2: the quote that begins a field is never closed"},
        {"block\n\"Bram\"x\n", "g.csv:2: something stands behind the quote that ends a field"},
        {"block\nBr\"am\n", "g.csv:2: a quote stands inside a field that doesn't begin with one"},
        {"\n\n", "g.csv: has no row; the first one has the heads: block, name, count, in, clock"},
    };
    for (const BadTable& bad : all)
        EXPECT_THAT(saidOf(bad.csv), HasSubstr(bad.message)) << bad.csv;
    EXPECT_EQ(saidOf("block,in,PORT_A_CLOCK\nBram,\"top/a\",\"1.2 GHz\"\n"), "no error");
}

// A design's groups through a table and back: the same inputs to the bit.
class RoundTrip : public testing::TestWithParam<const char*> {};

TEST_P(RoundTrip, GivesTheSameBits)
{
    const Scratch scratch;
    const std::string example = std::string(ZELM_SOURCE_DIR "/examples/") + GetParam() + ".json";
    const Design before = readDesign(example);
    for (const char* const file : {"groups.csv", "groups.XLSX"}) {
        const std::string table = scratch.path(file);
        ASSERT_EQ(scratch.run("export groups " + example + " -o " + table).code, 0)
            << scratch.read(scratch.path("err"));
        const ToolRun run = scratch.run("import table " + table + " -o " + scratch.path("back.json"));
        ASSERT_EQ(run.code, 0) << run.err;
        const Design after = readDesign(scratch.path("back.json"));
        ASSERT_EQ(after.groups.size(), before.groups.size());
        for (std::size_t i = 0; i < before.groups.size(); ++i) {
            const Group& was = before.groups[i];
            const Group& is = after.groups[i];
            EXPECT_EQ(is.block, was.block) << was.name;
            EXPECT_EQ(is.name, was.name);
            EXPECT_EQ(is.count, was.count) << was.name;
            EXPECT_EQ(is.in, was.in) << was.name;
            EXPECT_EQ(is.clock, was.clock) << was.name;
            EXPECT_EQ(is.inputs.size(), was.inputs.size()) << was.name;
            for (const auto& [cell, value] : was.inputs) {
                ASSERT_TRUE(is.input(cell)) << was.name << " " << cell;
                EXPECT_EQ(*is.input(cell), value) << was.name << " " << cell << " in " << file;
            }
        }
        EXPECT_EQ(groupsAsCsv(after), groupsAsCsv(before)) << file;
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, RoundTrip,
                         testing::Values("controller", "first", "gateway", "network", "radio", "vision"),
                         [](const auto& one) { return std::string(one.param); });

TEST(Table, ExportPrintsWhatImportReads)
{
    const Scratch scratch;
    const std::string design =
        scratch.write("d.json", R"({"groups": [{"block": "Bram", "name": "a, \"b\"\nc", "count": 0, "in": "top/x",
                                  "inputs": {"NUM_BRAMS": 3, "PORT_A_CLOCK": 0.1, "MODE": "BLKM36"}},
                                 {"block": "Clock", "inputs": {"CLOCK_FREQ": 1e-7}}]})");
    const std::string expected = "block,name,count,in,clock,NUM_BRAMS,PORT_A_CLOCK,MODE,CLOCK_FREQ\n"
                                 "Bram,\"a, \"\"b\"\"\nc\",0,top/x,,3,0.1,BLKM36,\n"
                                 "Clock,Clock,1,,,,,,1e-07\n";
    EXPECT_EQ(scratch.run("export groups " + design).out, expected);
    EXPECT_THAT(scratch.run("export groups " + design + " -o " + design).err, HasSubstr("isn't written over"));
    const ToolRun run = scratch.run("import table - < " + scratch.write("g.csv", expected));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\"PORT_A_CLOCK\": 0.1"));
}

/// A workbook of one sheet with these rows.
Archive bookOf(const std::string& rows)
{
    return {{"xl/workbook.xml", R"(<workbook xmlns:r="r"><sheets><sheet name="My groups" sheetId="1" r:id="rId7"/>)"
                                R"(<sheet name="Other" sheetId="2" r:id="rId8"/></sheets></workbook>)"},
            {"xl/_rels/workbook.xml.rels",
             R"(<Relationships><Relationship Id="rId7" Target="worksheets/one.xml"/>)"
             R"(<Relationship Id="rId8" Target="/xl/worksheets/two.xml"/></Relationships>)"},
            {"xl/sharedStrings.xml", "<sst><si><t>block</t></si><si><r><t>NUM_</t></r><r><t>BRAMS</t></r></si></sst>"},
            {"xl/worksheets/one.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>"},
            {"xl/worksheets/two.xml", "<worksheet><sheetData/></worksheet>"}};
}

std::string saidOfBook(const Archive& files, const std::string& sheet = "")
{
    const Scratch scratch;
    const std::string file = scratch.path("b.xlsx");
    pack(files, file);
    try {
        const TableDesign design = designOfTable(readTable(file, sheet));
        return design.text;
    } catch (const Error& error) {
        std::string message = error.what();
        return message.substr(message.find("b.xlsx"));
    }
}

constexpr const char* kHeads = R"(<row r="2"><c r="B2" t="s"><v>0</v></c><c t="s"><v>1</v></c></row>)";

TEST(Table, WorkbooksOfOtherProgramsAreRead)
{
    const std::string rows = std::string(kHeads) + R"(<row r="5"><c r="B5" t="inlineStr"><is><t>Bram</t></is></c>)"
                                                   R"(<c r="C5"><f>3+4</f><v>7</v></c></row>)";
    EXPECT_THAT(saidOfBook(bookOf(rows)), HasSubstr("\"NUM_BRAMS\": 7"));
    EXPECT_THAT(saidOfBook(bookOf(rows), "My groups"), HasSubstr("\"NUM_BRAMS\": 7"));
    EXPECT_THAT(saidOfBook(bookOf(rows), "Other"), HasSubstr("has no row"));
    EXPECT_THAT(saidOfBook(bookOf(rows), "Othre"), HasSubstr("has no sheet Othre; did you mean Other?; there are "));
}

TEST(Table, BrokenWorkbooksAreRefusedWithTheirPlace)
{
    const auto said = [](const std::string& row) { return saidOfBook(bookOf(kHeads + row)); };
    EXPECT_THAT(said(R"(<row r="7"><c r="B7" t="str"><v>Bram</v></c><c r="C7" t="str"><v>x</v></c></row>)"),
                HasSubstr("b.xlsx: sheet My groups, row 7, column C (NUM_BRAMS): expected a whole number"));
    EXPECT_THAT(said(R"(<row><c r="C3" t="e"><v>#REF!</v></c></row>)"),
                HasSubstr("sheet My groups, row 3, column C: the cell holds the error #REF!"));
    EXPECT_THAT(said(R"(<row><c r="C3" t="s"><v>2</v></c></row>)"), HasSubstr("the workbook has no text number 2"));
    EXPECT_THAT(said(R"(<row><c r="C3" t="s"><v>-1</v></c></row>)"), HasSubstr("the workbook has no text number -1"));
    EXPECT_THAT(said(R"(<row><c r="C3"><f>1+1</f></c></row>)"), HasSubstr("the formula has no result"));
    EXPECT_THAT(said(R"(<row><c r="C3"><v>12x</v></c></row>)"), HasSubstr("12x is no number"));
    EXPECT_THAT(said(R"(<row><c r="ZZZZZ3"><v>1</v></c></row>)"), HasSubstr("there is no cell ZZZZZ3"));
    EXPECT_THAT(said(R"(<row><c r="A99999999999"><v>1</v></c></row>)"), HasSubstr("there is no cell A99999999999"));
    EXPECT_THAT(said("<row><c"), HasSubstr("xl/worksheets/one.xml in it is broken: "));
    EXPECT_THAT(said("<row><c t=\"str\"><v>" + std::string(40000, 'x') + "</v></c></row>"),
                HasSubstr("the cell has 40000 bytes, at most 32767 are read"));
    Archive none = bookOf("");
    none.erase("xl/workbook.xml");
    EXPECT_THAT(saidOfBook(none), HasSubstr("is an archive, but no workbook (.xlsx): it has no xl/workbook.xml"));
    Archive bomb = bookOf("");
    bomb["xl/sharedStrings.xml"] = std::string(std::size_t{70} << 20, ' ');
    EXPECT_THAT(saidOfBook(bomb), HasSubstr("xl/sharedStrings.xml in it is larger than 64 MB"));
}

TEST(Table, CutWorkbooksAreRefused)
{
    const Scratch scratch;
    const std::string whole = scratch.path("w.xlsx");
    pack(bookOf(kHeads), whole);
    const std::string bytes = Scratch::read(whole);
    for (std::size_t size = 5; size < bytes.size(); size += 41) {
        try {
            readXlsx("cut.xlsx", bytes.substr(0, size), "");
            ADD_FAILURE() << size << " of " << bytes.size() << " bytes were read";
        } catch (const Error& error) {
            EXPECT_THAT(error.what(), HasSubstr("cut.xlsx: is a broken or cut workbook")) << size;
        }
    }
    const std::string old = scratch.write("old.xls", "\xD0\xCF\x11\xE0 and so on");
    EXPECT_THAT(scratch.run("import table " + old).err, HasSubstr("is a workbook of the old binary kind"));
}

} // namespace

} // namespace zelm::test::tableTest
