// Bad inputs and command lines with what is said of them, and how terminals, widths and odd names are treated.
#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/base/Text.h"
#include "host/report/Report.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <map>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace zelm::test::commandLineTest {

using namespace zelm::host;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

std::string parseErrorOf(const std::string& text)
{
    JsonSource source{"test.json", {}};
    try {
        parseJson(text, source);
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

std::string repeated(const std::string& text, std::size_t times)
{
    std::string all;
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(JsonBounds, DepthEndsAt64WithALine)
{
    EXPECT_EQ(parseErrorOf(repeated("[", 64) + repeated("]", 64)), "no error");
    const std::string words = "lists and objects stand more than 64 deep in each other";
    EXPECT_EQ(parseErrorOf(repeated("[", 65) + repeated("]", 65)), "test.json:1: " + words);
    EXPECT_EQ(parseErrorOf(repeated("[", 500000)), "test.json:1: " + words);
    EXPECT_EQ(parseErrorOf("\n\n" + repeated("{\"a\":\n", 500000)), "test.json:67: " + words); // 3 + 64
}

TEST(JsonBounds, MessagesQuoteLittleOfAValue)
{
    const std::string lengthy(100000, 'x');
    const std::string rows[] = {
        "{\"" + lengthy + "\": 1}",
        R"({"name": ")" + lengthy + "\n\"}",
        "{\"name\": 1" + std::string(100000, '0') + "e999}",
        "{\"groups\": " + lengthy + "}",
        R"({"groups": [{"block": ")" + lengthy + "\"}]}",
        R"({"groups": [{"block": ["" + lengthy + ""]}]})",
        R"({"groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": ")" + lengthy + "\"}}]}",
        R"({"groups": [{"block": "Bram", "inputs": {"MODE": [)" + repeated("1,", 100000) + "1]}}]}",
        R"({"groups": [{"block": "Bram", "inputs": {")" + lengthy.substr(0, 999) + "\": 1}}]}",
        "{\"groups\": [], \"rails\": {\"A\": \"" + lengthy + "\"}}",
    };
    for (const std::string& text : rows) {
        std::string said = "no error";
        try {
            estimateOf(text);
        } catch (const Error& error) {
            said = error.what();
        }
        EXPECT_THAT(said, StartsWith("test.json:")) << text.substr(0, 60);
        EXPECT_THAT(said, Not(HasSubstr(std::string(250, 'x')))) << text.substr(0, 60); // a path may be longer
        EXPECT_LT(said.size(), 900U) << said;
    }
}

TEST(JsonBounds, ManyFieldsTakeLinearTime)
{
    const auto secondsFor = [](std::size_t fields) {
        std::string text = "{";
        for (std::size_t i = 0; i < fields; ++i)
            text += "\"field" + std::to_string(i) + "\":\n" + std::to_string(i) + ",";
        text.back() = '}';
        JsonSource source{"test.json", {}};
        const auto start = std::chrono::steady_clock::now();
        const Json json = parseJson(text, source);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(json.size(), fields);
        EXPECT_EQ(source.at("field3"), "test.json:4: field3"); // each field begins on the line that ends the one before
        return taken.count();
    };
    // If each field cost a walk over all before, ten times as many would take a hundred times as long.
    const double few = secondsFor(10000);
    const double many = secondsFor(100000);
    EXPECT_LT(many, 40.0 * few + 0.05) << few << " s for a tenth";
}

TEST(JsonBounds, LinesAreKeptPerLineAndNotPerField)
{
    JsonSource source{"test.json", {}};
    parseJson("{\"a\": [" + repeated("[1],", 1000) + "\n{\"b\": [2,\n3]}], \"c\":\n{\"d\": 4}}", source);
    EXPECT_LT(source.lines->size(), 8U);
    const std::pair<std::string, std::string> rows[] = {
        {"a", "test.json:1: a"},
        {"a[999][0]", "test.json:1: a[999][0]"},
        {"a[1000]", "test.json:2: a[1000]"},
        {"a[1000].b[0]", "test.json:2: a[1000].b[0]"},
        {"a[1000].b[1]", "test.json:3: a[1000].b[1]"},
        {"c", "test.json:3: c"},
        {"c.d", "test.json:4: c.d"},
        {"c.e", "test.json:3: c.e"}, // isn't there
        {"e", "test.json: e"},
    };
    for (const auto& [path, words] : rows)
        EXPECT_EQ(source.at(path), words);
}

TEST(JsonBounds, MoreValuesThanADesignNeedsAreRefused)
{
    EXPECT_EQ(parseErrorOf("[\n" + repeated("1,\n", 1500000) + "1]"), "test.json:1500001: more than 1500000 values");
}

// The parser would gather all of it before anybody could look at it.
TEST(JsonBounds, WhatNobodyWritesIsRefusedBeforeItTakesMemory)
{
    const std::string lengthy(1000001, '0');
    const std::string words = "test.json:2: a text, number or gap of more than 1000000 characters";
    for (const std::string& value : {'"' + lengthy + '"', '1' + lengthy, std::string(1000001, ' ') + '1',
                                     '"' + repeated("\\\"", 500001) + '"', '"' + repeated(",", 1000001) + '"'})
        EXPECT_EQ(parseErrorOf("{\n\"a\": " + value + "}"), words) << value.substr(0, 20);
    EXPECT_EQ(parseErrorOf("[" + repeated("\"" + std::string(900000, 'x') + "\",\n", 5) + "1]"), "no error");
}

TEST(JsonBounds, FieldsTwiceAreToldWithTheirLine)
{
    EXPECT_EQ(parseErrorOf("{\"a\": 1,\n\"b\": [{\"c\": 1,\n\"d\": {\"c\": 1}, \"c\": 2}]}"),
              "test.json:3: the field \"c\" stands twice in one object");
    EXPECT_EQ(parseErrorOf("[{\"a\": 1}, {\"a\": 1}]"), "no error");
    EXPECT_EQ(parseErrorOf("{\"a\\\"\": 1,\n\"a\\\\\": {}, \"a\\\"\": 2}"),
              "test.json:2: the field \"a\"\" stands twice in one object");
}

struct Said {
    std::string arguments;
    std::string words;
};

TEST(CommandLine, MistakesAreToldWithTheToolsNameAndTheNearestWord)
{
    const Scratch scratch;
    const Said rows[] = {
        {"estimat d.json", "there is no subcommand estimat; did you mean estimate?"},
        {"chek-data", "there is no subcommand chek-data; did you mean check-data?"},
        {"frobnicate", "there is no subcommand frobnicate; there are estimate, sweep,"},
        {"estimate d.json --jsno", "there is no option --jsno; did you mean --json"},
        {"estimate d.json --htm=r", "there is no option --htm; did you mean --html?"},
        {"--datadri x blocks", "there is no option --datadri; did you mean --datadir?"},
        {"blocks --verbos", "there is no option --verbos; did you mean --verbose?"},
        {"import netlits n.json", "there is no subcommand import netlits; did you mean netlist?"},
        {"import", "subcommand is required"},
        {"cells Bram Plam", "cells takes no further argument: Plam"},
        {"estimate", "design is required"},
        {"", "subcommand is required"},
        {"estimate d.json --csv --json", "excludes"},
        {"estimate ''", "the name of the file to read is empty"},
        {"--datadir '' parts", "--datadir: the name of the data directory is empty"},
        {"check-data ''", "the name of the data directory is empty"},
        {"estimate d.json --html", "--html"},
        {"manual frob", "frob"},
        {"calc Bram NUM_BRAMS=99999999999", "NUM_BRAMS takes a whole number of 32 bits"},
        {"calc Bram PORT_A_CLOCK=1,5", "PORT_A_CLOCK: there is no unit ,5"},
        {"calc Bram $(head -c 100000 /dev/zero | tr '\\0' x)", "is not of the form CELL=VALUE"},
        {"cells $(head -c 100000 /dev/zero | tr '\\0' x)", "there is no block xxx"},
    };
    for (const auto& [arguments, words] : rows) {
        const ToolRun result = scratch.run(arguments);
        EXPECT_EQ(result.code, 2) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
        EXPECT_THAT(result.err, AllOf(StartsWith("zelm: "), HasSubstr(words))) << arguments;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << arguments << "\n" << result.err;
        EXPECT_LT(result.err.size(), 500U) << arguments;
    }
}

TEST(CommandLine, EveryHelpEndsWithAnExampleAndTheExitCodes)
{
    const Scratch scratch;
    for (const std::string command : {"",
                                      "estimate",
                                      "sweep",
                                      "import",
                                      "import netlist",
                                      "import activity",
                                      "import table",
                                      "export",
                                      "export groups",
                                      "propagate",
                                      "diff",
                                      "solve",
                                      "fit",
                                      "sample",
                                      "sensitivity",
                                      "explain",
                                      "blocks",
                                      "cells",
                                      "calc",
                                      "parts",
                                      "standards",
                                      "schema",
                                      "check-data",
                                      "docs"}) {
        const ToolRun result = scratch.run(command + " --help");
        EXPECT_EQ(result.code, 0) << command;
        EXPECT_THAT(result.err, IsEmpty()) << command;
        const std::size_t example = result.out.find("\nExample:\n  zelm " + command);
        const std::size_t codes = result.out.find("\nExit codes: 0 ");
        EXPECT_LT(example, codes) << command << "\n" << result.out;
        EXPECT_NE(codes, std::string::npos) << command << "\n" << result.out;
        EXPECT_THAT(result.out, Not(HasSubstr("manual"))) << command;
    }
}

TEST(CommandLine, CellsShowWhatIsLegalInInputs)
{
    const Scratch scratch;
    const ToolRun result = scratch.run("cells Bram --inputs --json");
    ASSERT_EQ(result.code, 0) << result.err;
    std::map<std::string, std::string> legal;
    const auto json = nlohmann::json::parse(result.out);
    for (const auto& cell : json.at("cells"))
        legal[cell.at("cell").get<std::string>()] = cell.at("legal").get<std::string>();
    EXPECT_EQ(legal["NUM_BRAMS"], "from 0");
    EXPECT_EQ(legal["PORT_A_CLOCK"], "from 0, usually up to 10000");
    EXPECT_EQ(legal["PORT_A_ENABLE_RATE"], "from 0, usually up to 1");
    EXPECT_THAT(legal["MODE"], HasSubstr(", "));
    EXPECT_FALSE(legal.contains("VCCINT_POWER"));
    EXPECT_THAT(scratch.run("cells Bram --inputs").out, HasSubstr("Legal"));
}

TEST(CommandLine, ManPageAndCompletionHoldEveryCommandAndOption)
{
    const Scratch scratch;
    const std::string bash = scratch.write("zelm.bash", scratch.run("manual bash").out);
    const auto completed = [&](const std::string& words) {
        std::ofstream(scratch.path("try")) << "source " << bash << "; COMP_WORDS=(" << words
                                           << "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zelm; echo ${COMPREPLY[@]}\n";
        std::system(("bash " + scratch.path("try") + " >" + scratch.path("tried")).c_str());
        return Scratch::read(scratch.path("tried"));
    };
    EXPECT_EQ(completed("zelm es"), "estimate\n");
    EXPECT_EQ(completed("zelm calc Bra"), "Bram\n");
    EXPECT_EQ(completed("zelm import netl"), "netlist\n");
    EXPECT_EQ(completed("zelm import netlist --datad"), "--datadir\n");
    EXPECT_EQ(completed("zelm -v estimate d.json --ju"), "--junit\n");
    EXPECT_EQ(completed("zelm sweep --datad"), "--datadir\n");
    EXPECT_EQ(completed("zelm estimate d"), "\n"); // files: the shell's own business
    const std::string zsh = scratch.run("manual zsh").out;
    EXPECT_THAT(zsh, AllOf(StartsWith("#compdef zelm\n"), HasSubstr("'estimate:Estimate a design'"),
                           HasSubstr("'--html[Write a self-contained HTML report to this file]:file:_files'")));
    const std::string man = scratch.run("manual man").out;
    EXPECT_THAT(man, AllOf(HasSubstr("\n.TH ZELM 1 "), HasSubstr("\n.SS check\\-data\n"),
                           HasSubstr("\n.B \\-\\-junit\n"), HasSubstr("\n.SH EXIT STATUS\n")));
}

TEST(CommandLine, DataErrorsAreToldOnceWithWhatWasLookedForAndWhere)
{
    const Scratch scratch;
    const std::string data = scratch.copyData();
    const std::string design = scratch.write("d.json", R"({"device": {"part": "zq4410"}, "groups": []})");
    const std::string parts = Scratch::dataFile(data, "Parts");
    const auto spoil = [&](const std::string& how) {
        std::filesystem::remove_all(parts);
        EXPECT_EQ(std::system(how.c_str()), 0) << how;
    };
    const Said rows[] = {
        {"true",
         "powercfg/orvane/ZelmOrvanePartsData.cfg: no directory of the data search list holds this file (looked "
         "in " +
             data + ")"},
        {"mkdir " + parts, parts + ": cannot be read: is a folder"},
        {"mkfifo " + parts, parts + ": cannot be read: is a device or FIFO"},
        {"touch " + parts, parts + ": cannot be read: is empty"},
        {"ln -s ZelmOrvanePartsData.cfg " + parts, "ZelmOrvanePartsData.cfg: "},
        {"echo 'a b' >" + parts, parts + ":1: syntax error"},
        {"echo 'ZelmOrvanePartsData : { };' >" + parts, parts + ":1: expected a group"},
        {"echo 'ZelmOrvanePartsData = [1, 2];' >" + parts, parts + ":1: expected a group"},
        {"echo '@include \"" + scratch.path("fifo") + "\"' >" + parts, "fifo: cannot be read: is a device or FIFO"},
        {"head -c 5000000 /dev/zero | tr '\\0' x >" + parts, parts + ":1: cannot be read: a line of more than 10000"},
    };
    ASSERT_EQ(mkfifo(scratch.path("fifo").c_str(), 0600), 0);
    for (const auto& [how, words] : rows) {
        spoil(how);
        for (const std::string& command : {std::string("parts --json"), "estimate --json " + design}) {
            const ToolRun result = scratch.run("--datadir " + data + " " + command);
            EXPECT_EQ(result.code, 2) << how << ": " << command;
            EXPECT_THAT(result.out, IsEmpty()) << how << ": " << command;
            EXPECT_THAT(result.err, AllOf(StartsWith("zelm: "), HasSubstr(words))) << how << ": " << command;
            EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << how << "\n" << result.err;
        }
        const ToolRun check = scratch.run("check-data " + data);
        EXPECT_EQ(check.code, 2) << how;
        EXPECT_THAT(check.out, AllOf(HasSubstr(words), Not(HasSubstr("Exception")), Not(HasSubstr("boost")))) << how;
    }
}

TEST(CommandLine, AWrongDataDirectoryIsOneMessage)
{
    const Scratch scratch;
    ASSERT_EQ(setenv("QTA_DATADIR", "/no/such", 1), 0);
    for (const std::string command : {"parts", "blocks", "calc Bram", "check-data"}) {
        const ToolRun result = scratch.run(command);
        EXPECT_EQ(result.code, 2) << command;
        EXPECT_EQ(result.err, "zelm: QTA_DATADIR /no/such: this directory has no powercfg folder (the data are in "
                              "powercfg/orvane/*.cfg below it)\n");
    }
    EXPECT_EQ(scratch.run("--help").code, 0);
    ASSERT_EQ(setenv("QTA_DATADIR", shippedDataDirectory().c_str(), 1), 0);
}

TEST(OddNames, AreEscapedWhereATerminalMayShowThem)
{
    const std::pair<std::string, std::string> rows[] = {
        {"plain \xc3\xa9 \xe4\xb8\xad", "plain \xc3\xa9 \xe4\xb8\xad"},
        {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {"\x1b[31mred", "\\x1b[31mred"},
        {std::string("nul\0", 4), "nul\\x00"},
        {"\x7f", "\\x7f"},
        {"\xc2\x9b", "\\u009b"}, // the one-character escape sequence introducer
        {"\xe2\x80\xae"
         "abc",
         "\\u202eabc"}, // right to left from here
        {"\xe2\x81\xa6", "\\u2066"},
        {"\xff\xc3", "\\xff\\xc3"},
        {"\xed\xa0\x80", "\\xed\\xa0\\x80"}, // half of a surrogate pair
    };
    for (const auto& [text, safe] : rows)
        EXPECT_EQ(shown(text), safe);
    EXPECT_EQ(validUtf8("a\xff\xc3\xa9"), "a\xef\xbf\xbd\xc3\xa9");
}

TEST(OddNames, EveryFormStaysWellFormed)
{
    Estimate estimate = estimateOf(R"({"name": "x", "groups": [{"block": "Bram", "name": "y"}],
                                       "budgets": {"totalPower": 0}})");
    const std::string odd = "\x1b[31m<b>&\"'\n\xff\xe2\x80\xae\xef\xbf\xbf]]></script>\x01";
    estimate.design.name = odd;
    estimate.groups.front().name = odd;
    estimate.budgets.front().name = odd;
    estimate.warnings.push_back(odd);
    const auto json = nlohmann::json::parse(jsonText(jsonReport(estimate)), nullptr, false);
    ASSERT_FALSE(json.is_discarded());
    EXPECT_EQ(json["name"], validUtf8(odd));
    const std::string html = htmlReport(estimate, {});
    EXPECT_THAT(html, Not(HasSubstr("]]></script>")));
    EXPECT_EQ(validUtf8(html), html);
    const std::string csv = csvReport(estimate);
    EXPECT_EQ(validUtf8(csv), csv);
    EXPECT_THAT(csv, HasSubstr(",\"" + std::string("\x1b[31m<b>&\"\"'\n\xef\xbf\xbd")));
    const std::string xml = junitReport(estimate);
    EXPECT_EQ(validUtf8(xml), xml);
    EXPECT_THAT(xml, HasSubstr("name=\" [31m&lt;b&gt;&amp;&quot;'&#10;\xef\xbf\xbd\xe2\x80\xae\xef\xbf\xbd]]&gt;"));
    for (const char* never : {"\x1b", "\x01", "\xff", "\xe2\x80\xae"})
        EXPECT_THAT(textReport(estimate, true), Not(HasSubstr(never)));
    EXPECT_THAT(textReport(estimate, true), HasSubstr("\\x1b[31m<b>&\"'\\n\\xff\\u202e"));
}

TEST(OddNames, MessagesOnATerminalCannotSteerIt)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", R"({"groups": [{"block": "\u001b[2J\u202eBrem"}]})");
    EXPECT_THAT(scratch.run("estimate " + design).err,
                AllOf(HasSubstr("there is no block \\x1b[2J\\u202eBrem"), Not(HasSubstr("\x1b"))));
    const ToolRun result = scratch.run("calc Bram --json MODE=$(printf '\\377\\033[2J')");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("zelm: warning: \"\\xff\\x1b[2J\" is no word of MODE"));
    EXPECT_FALSE(nlohmann::json::parse(result.out, nullptr, false).is_discarded());
}

TEST(Tables, WideAndCombiningCharactersKeepColumnsAligned)
{
    EXPECT_EQ(width("abc"), 3U);
    EXPECT_EQ(width("\xe4\xb8\xad\xe6\x96\x87"), 4U); // two ideographs of two columns each
    EXPECT_EQ(width("e\xcc\x81"), 1U);                // an accent above the letter before
    EXPECT_EQ(width("\x1b[31mred\x1b[0m"), 3U);
    TextTable table({"Name", "B"});
    table.row({"\xe4\xb8\xad\xe6\x96\x87\xe4\xb8\xad", "z"});
    table.row({"abcdef", "z"});
    EXPECT_EQ(table.text(), "Name    B\n------  -\n\xe4\xb8\xad\xe6\x96\x87\xe4\xb8\xad  z\nabcdef  z\n");
}

TEST(Tables, FitTheTerminal)
{
    TextTable table({"Cell", "Value", "Meaning of the cell"});
    table.row({"ABC", "1.5", "a text of several words that is long"});
    table.row({"D", "2", "short"});
    const std::string whole = table.text();
    TextTable::fitTo(30);
    const std::string fitted = table.text();
    TextTable::fitTo(0);
    // 30 less 4 and 5 columns and two gaps of 2 leaves 17 for the words.
    EXPECT_EQ(fitted, "Cell  Value  Meaning of the\n"
                      "             cell\n"
                      "----  -----  -----------------\n"
                      "ABC     1.5  a text of several\n"
                      "             words that is\n"
                      "             long\n"
                      "D         2  short\n");
    EXPECT_EQ(table.text(), whole);

    // 36 less 14 leave 22 columns.
    EXPECT_EQ(wrapped("Options:\n  -v,--very   several words to read here\n  none of it\n", 36),
              "Options:\n  -v,--very   several words to read\n              here\n  none of it\n");
    EXPECT_EQ(wrapped("a long line that nobody breaks", 0), "a long line that nobody breaks");

    const Scratch scratch;
    for (const std::string arguments : {"cells Bram", "--help", "sweep --help"}) {
        const std::string command = "COLUMNS=90 TERM=xterm script -qec '" ZELM_TOOL " " + arguments +
                                    "' /dev/null </dev/null >" + scratch.path("tty");
        ASSERT_EQ(std::system(command.c_str()), 0);
        std::istringstream lines(Scratch::read(scratch.path("tty")));
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line); ++count)
            EXPECT_LE(width(line.substr(0, line.find('\r'))), 90U) << line;
        EXPECT_GT(count, 10U) << arguments;
    }
}

} // namespace

} // namespace zelm::test::commandLineTest
