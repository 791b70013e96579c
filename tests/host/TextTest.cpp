#include "support/Bits.h"

#include "host/base/Numerals.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"

#include <cmath>
#include <cstring>

namespace zelm::test::textTest {

using namespace zelm::host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(HostText, SiTakesPrefixAndFourDigits)
{
    EXPECT_EQ(si(0.00123, "W"), "1.230 mW");
    EXPECT_EQ(si(0.0, "W"), "0.000 W");
    EXPECT_EQ(si(1.0, "A"), "1.000 A");
    EXPECT_EQ(si(0.99994, "W"), "999.9 mW");
    EXPECT_EQ(si(0.99996, "W"), "1.000 W"); // not 1000.0 mW
    EXPECT_EQ(si(-0.99996e-3, "W"), "-1.000 mW");
    EXPECT_EQ(si(12.345, "W"), "12.35 W");
    EXPECT_EQ(si(123.44, "W"), "123.4 W");
    EXPECT_EQ(si(-0.5, "W"), "-500.0 mW");
    EXPECT_EQ(si(4.56e-6, "A"), "4.560 uA");
    EXPECT_EQ(si(7e-9, "A"), "7.000 nA");
    EXPECT_EQ(si(2.5e-12, "A"), "2.500 pA");
    EXPECT_EQ(si(HUGE_VAL, "W"), "inf W");
}

TEST(HostText, NearestNamesAreBlindToCaseAndBestFirst)
{
    const std::vector<std::string> known{"CLOCK_FREQ", "CLOCK", "CLOCKS", "TOGGLE_RATE"};
    EXPECT_THAT(nearestNames("clock", known), ElementsAre("CLOCK", "CLOCKS"));
    EXPECT_THAT(nearestNames("CLOCK_FRQ", known), ElementsAre("CLOCK_FREQ"));
    EXPECT_THAT(nearestNames("quite different", known), IsEmpty());
    EXPECT_THAT(nearestNames("AA", {"AB", "AC", "AD", "AE"}), ElementsAre("AB", "AC", "AD"));
}

TEST(HostText, Suggestions)
{
    EXPECT_EQ(suggestion("Brem", {"Bram", "Plam"}), "; did you mean Bram?");
    EXPECT_EQ(suggestion("AA", {"AB", "AC"}), "; did you mean AB or AC?");
    EXPECT_EQ(suggestion("xyzzy", {"Bram"}), "");
    EXPECT_EQ(orList({}), "");
    EXPECT_EQ(orList({"a", "b", "c"}), "a, b or c");
}

TEST(HostText, ExactTextReadsBack)
{
    EXPECT_EQ(exactText(0.72f), "0.72");
    EXPECT_EQ(exactText(200.0f), "200");
    for (const float value : {0.1f, 1.0f / 3.0f, 1e-30f, 3.4e38f, -12345.678f})
        EXPECT_EQ(std::stof(exactText(value)), value) << exactText(value);
}

// The shorter one of the two forms, and what is whole in all its digits: the page's models have to write the same.
TEST(HostText, ExactTextIsTheShorterForm)
{
    EXPECT_EQ(exactText(100.0f), "100");
    EXPECT_EQ(exactText(100000.0f), "1e+05");
    EXPECT_EQ(exactText(123456.0f), "123456");
    EXPECT_EQ(exactText(16777216.0f), "16777216"); // 2^24
    EXPECT_EQ(exactText(0.001f), "0.001");
    EXPECT_EQ(exactText(0.0001f), "1e-04");
    EXPECT_EQ(exactText(-0.25f), "-0.25");
    EXPECT_EQ(exactText(-0.0f), "-0");
}

TEST(HostText, NumbersAreAllOfTheirText)
{
    EXPECT_EQ(realIn<double>("0.72"), 0.72);
    EXPECT_EQ(realIn<float>("-1e5"), -100000.0f);
    EXPECT_EQ(realIn<float>(".5"), 0.5f);
    for (const char* text : {"", " 1", "1 ", "+1", "0x10", "1e", "1_0", "--1", "one"})
        EXPECT_EQ(realIn<double>(text), std::nullopt) << text;
    EXPECT_EQ(realIn<float>("1e39"), std::nullopt); // above 3.4e38, which a double can hold
    EXPECT_EQ(realIn<double>("1e39"), 1e39);
    EXPECT_EQ(realIn<float>("1e-46"), std::nullopt); // below half of the least float, 1.4e-45
    EXPECT_EQ(realIn<double>("1e400"), std::nullopt);
    EXPECT_EQ(realIn<double>("0e999"), 0.0);
}

TEST(HostText, TablesAlignByKind)
{
    TextTable table({"Rail", "Power", "Note"});
    table.row({"A", "1.5", "x"});
    table.rule();
    table.row({"Total", "-12", "long"});
    EXPECT_EQ(table.text(), "Rail   Power  Note\n"
                            "-----  -----  ----\n"
                            "A        1.5  x\n"
                            "-----  -----  ----\n"
                            "Total    -12  long\n");
}

TEST(HostText, TablesCountCharactersAndNotBytes)
{
    TextTable table({"a", "b"});
    table.row({"\xc3\xa9\xc3\xa9", "z"}); // two characters of two bytes
    EXPECT_EQ(table.text(), "a   b\n--  -\n\xc3\xa9\xc3\xa9  z\n");
}

TEST(HostText, ValuesAsText)
{
    EXPECT_EQ(valueText(3), "3");
    EXPECT_EQ(valueText(0.5f), "0.5");
    EXPECT_EQ(valueText(std::string("LUT")), "LUT");
    EXPECT_EQ(valueText({}), "unset");
}

TEST(HostText, TheNamesOfASuggestionAreReadBack)
{
    const std::vector<std::string> known{"CLOCK_FREA", "CLOCK_FREB", "CLOCK_FREC", "SOMETHING_ELSE"};
    EXPECT_THAT(suggestedNames("no CLOCK_FREX" + suggestion("CLOCK_FREX", known)),
                ElementsAre("CLOCK_FREA", "CLOCK_FREB", "CLOCK_FREC"));
    EXPECT_THAT(suggestedNames("no A" + suggestion("CLOCK_FREX", {"CLOCK_FREA", "CLOCK_FREB"}) + " (at x = 1)"),
                ElementsAre("CLOCK_FREA", "CLOCK_FREB"));
    EXPECT_THAT(suggestedNames("no A; did you mean B?"), ElementsAre("B"));
    EXPECT_THAT(suggestedNames("is that what you mean?"), IsEmpty());
}

TEST(Complaints, GoToWhoeverHearsThem)
{
    std::vector<std::string> outer;
    std::vector<std::string> inner;
    {
        const HeardComplaints heard(outer);
        complain("one");
        {
            const HeardComplaints alsoHeard(inner);
            complain("two");
        }
        complain("three");
    }
    EXPECT_THAT(outer, ElementsAre("one", "three"));
    EXPECT_THAT(inner, ElementsAre("two"));
}

TEST(TextTable, ColoursTakeNoColumns)
{
    TextTable plain({"A", "B"});
    plain.row({"x", "good"});
    plain.row({"y", "bad"});
    TextTable painted({"A", "B"});
    painted.row({"x", Paint(true).good("good")});
    painted.row({"y", Paint(true).bad("bad")});
    std::string text = painted.text();
    EXPECT_THAT(text, testing::HasSubstr("\x1b[32mgood\x1b[0m"));
    for (const char* code : {"\x1b[32m", "\x1b[1;31m", "\x1b[0m"}) {
        for (std::size_t at = text.find(code); at != std::string::npos; at = text.find(code))
            text.erase(at, std::strlen(code));
    }
    EXPECT_EQ(text, plain.text());
}

TEST(Paint, LeavesTextAloneWhereColoursDontBelong)
{
    EXPECT_EQ(Paint().bad("x") + Paint().good("y") + Paint().title("z") + Paint(false).warning("w"), "xyzw");
}

} // namespace

} // namespace zelm::test::textTest
