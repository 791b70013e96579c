// zelm format: one form for all designs.

#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/design/Format.h"
#include "host/report/Report.h"

namespace zelm::test::formatTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

std::string formatted(const std::string& text)
{
    return formattedDesign(text, "test.json");
}

std::vector<std::string> examples()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(ZELM_SOURCE_DIR "/examples")) {
        if (entry.path().extension() == ".json")
            files.push_back(entry.path().string());
    }
    return files;
}

struct Form {
    const char* name;
    const char* text;
    const char* expected;
};

void PrintTo(const Form& form, std::ostream* out)
{
    *out << form.text;
}

class Formatted : public testing::TestWithParam<Form> {};

TEST_P(Formatted, HasItsForm)
{
    EXPECT_EQ(formatted(GetParam().text), GetParam().expected);
    EXPECT_EQ(formatted(GetParam().expected), GetParam().expected) << "a second time";
}

const Form kForms[] = {
    {"Empty", "{}", "{\n}\n"},
    {"NoObject", " [ ] ", "[\n]\n"},
    {"Word", "true", "true\n"},
    {"Spaces", "{\"name\":\"a\",\r\n\r\n\t\"groups\":[ ]}", "{\n  \"name\": \"a\",\n\n  \"groups\": []\n}\n"},
    {"FieldsInOrder", R"({"groups": [], "rails": {"VCCINT": 0.80}, "name": "x"})",
     "{\n  \"name\": \"x\",\n  \"rails\": { \"VCCINT\": 0.80 },\n  \"groups\": []\n}\n"},
    {"GroupFieldsInOrder", R"({"groups": [{"inputs": {"B": 1, "A": 2}, "in": "x", "name": "n", "block": "Bram"}]})",
     "{\n  \"groups\": [\n    { \"block\": \"Bram\", \"name\": \"n\", \"in\": \"x\", \"inputs\": { \"B\": 1, \"A\": 2 "
     "} }\n  ]\n}\n"},
    {"UnknownFieldsLast", R"({"zzz": 1, "aaa": 2, "name": "x"})",
     "{\n  \"name\": \"x\",\n  \"zzz\": 1,\n  \"aaa\": 2\n}\n"},
    {"NumbersAsWritten", R"({"a": [1.50, 1e3, -0.0, 12E+2]})", "{\n  \"a\": [1.50, 1e3, -0.0, 12E+2]\n}\n"},
    {"TextsAsWritten", R"({"a": "\u0041 // \" /* { [ , \\"})", "{\n  \"a\": \"\\u0041 // \\\" /* { [ , \\\\\"\n}\n"},
    {"ListOfObjects", R"({"a": [{"b": 1}, {}]})", "{\n  \"a\": [\n    { \"b\": 1 },\n    {}\n  ]\n}\n"},
    {"CommentsBefore", "// one\n\n/* two */ { // three\n\"name\": 1 }",
     "// one\n\n/* two */\n{\n  // three\n  \"name\": 1\n}\n"},
    {"CommentsBehind", "{\"name\": 1 // one\n, \"b\": 2, /* two */ /* three */ \"c\": 3 /* four */} // five\n// six",
     "{\n  \"name\": 1, // one\n  \"b\": 2, /* two */ /* three */\n  \"c\": 3 /* four */\n} // five\n// six\n"},
    {"CommentsInside",
     "{\"a\": /* one */ 1, \"b\" // two\n: 2\n// three\n, \"c\": [ // four\n], \"d\": {\n/* five\n   more */\n}\n// "
     "six\n}",
     "{\n  /* one */\n  \"a\": 1,\n  // two\n  // three\n  \"b\": 2,\n  \"c\": [\n    // four\n  ],\n  \"d\": {\n"
     "    /* five\n   more */\n  }\n  // six\n}\n"},
    {"CommentsMoveWithTheirField", "{\n// the groups\n\"groups\": [], // none\n// the name\n\"name\": \"x\"\n}",
     "{\n  // the name\n  \"name\": \"x\",\n  // the groups\n  \"groups\": [] // none\n}\n"},
    {"LongCommentBehind", "{\"a\": 1, /* one\ntwo */ \"b\": 2}", "{\n  \"a\": 1,\n  /* one\ntwo */\n  \"b\": 2\n}\n"},
    {"BlankLines", "{\n\n\n\"a\": 1,\n\n\n\n// c\n\n\n\"b\": 2,\n\"c\": 3\n\n}",
     "{\n  \"a\": 1,\n\n  // c\n\n  \"b\": 2,\n  \"c\": 3\n}\n"},
    {"MarkOfTheBytesOrder", "\xef\xbb\xbf{\"a\": 1}", "{\n  \"a\": 1\n}\n"},
};

INSTANTIATE_TEST_SUITE_P(All, Formatted, testing::ValuesIn(kForms), [](const auto& one) { return one.param.name; });

TEST(Format, LinesHaveAtMost120Columns)
{
    const auto field = [](std::size_t length) { return "{\"a\": [\"" + std::string(length, 'x') + "\"]}"; };
    // Two spaces, "a": [" and "] are 11 columns, which leaves 109 to a text.
    EXPECT_EQ(formatted(field(110)), "{\n  \"a\": [\n    \"" + std::string(110, 'x') + "\"\n  ]\n}\n");
    EXPECT_EQ(formatted(field(109)), "{\n  \"a\": [\"" + std::string(109, 'x') + "\"]\n}\n");
}

TEST(Format, KeepsEstimatesAndComments)
{
    for (const std::string& file : examples()) {
        const std::string text = Scratch::read(file);
        const std::string form = formatted(text);
        EXPECT_EQ(formatted(form), form) << file;
        const std::string spoilt = "// first\n" + text.substr(0, text.find(',') + 1) + " // second\n" +
                                   text.substr(text.find(',') + 1) + "/* last */";
        const std::string kept = formatted(spoilt);
        for (const char* comment : {"// first\n", " // second\n", "/* last */\n"})
            EXPECT_THAT(kept, HasSubstr(comment)) << file;
        const auto report = [&](const std::string& design) {
            return jsonText(jsonReport(estimate(parseDesign(file, design))));
        };
        EXPECT_EQ(report(kept), report(text)) << file;
    }
}

TEST(Format, TellsWhatIsNoJson)
{
    try {
        formatted("{\n\"a\": 1,,}");
        ADD_FAILURE() << "was formatted";
    } catch (const Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("test.json:2:8: syntax error"));
    }
}

TEST(Format, WritesWhereItIsTold)
{
    const Scratch scratch;
    const std::string file = scratch.write("d.json", "{\"groups\": []}");
    const std::string form = "{\n  \"groups\": []\n}\n";
    EXPECT_EQ(scratch.run("format " + file).out, form);
    EXPECT_EQ(scratch.run("format - <" + file).out, form);
    const ToolRun check = scratch.run("format --check " + file);
    EXPECT_EQ(check.code, 1);
    EXPECT_THAT(check.err, HasSubstr(file + " isn't in the form"));
    EXPECT_EQ(scratch.run("format " + file + " -o " + scratch.path("new.json")).code, 0);
    EXPECT_EQ(Scratch::read(scratch.path("new.json")), form);
    EXPECT_EQ(Scratch::read(file), "{\"groups\": []}");
    EXPECT_EQ(scratch.run("format --in-place " + file).code, 0);
    EXPECT_EQ(Scratch::read(file), form);
    EXPECT_EQ(scratch.run("format --check " + file).code, 0);
    EXPECT_EQ(scratch.run("format --in-place - <" + file).code, 2);
    EXPECT_EQ(scratch.run("format --in-place --check " + file).code, 2);
    EXPECT_EQ(scratch.run("format " + file + " -o " + file).code, 2);
    EXPECT_EQ(scratch.run("format " + scratch.path("none.json")).code, 2);
}

} // namespace

} // namespace zelm::test::formatTest
