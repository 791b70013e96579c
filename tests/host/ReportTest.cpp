#include "Designs.h"

#include "host/base/Json.h"
#include "host/report/HtmlNumbers.h"
#include "host/report/HtmlPage.h"
#include "host/report/Report.h"

#include <cmath>
#include <sstream>

namespace zelm::test::reportTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

Estimate budgeted()
{
    return estimateOf(R"({"name": "a<b & \"c\"", "budgets": {"totalPower": 0, "rails": {"VCCINT": 1000}},
                          "groups": [{"block": "Bram", "name": "x, \"y\""}, {"block": "Selv", "count": 4,
                                      "inputs": {"OUTPUT_IO_STANDARD": "SSTL12", "OUTPUT_ENABLE": 1}}]})");
}

// The fields of one line, quoted ones unquoted.
std::vector<std::string> fieldsOf(const std::string& line)
{
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

TEST(Report, JsonHoldsNullAndReasonForWhatIsNoNumber)
{
    Estimate estimate = budgeted();
    estimate.sides[0].totalWatts = HUGE_VAL;
    estimate.offchipWatts = std::nan("");
    estimate.sides[0].largestThetaJA = HUGE_VAL;
    const Json parsed = Json::parse(jsonReport(estimate).dump());
    EXPECT_TRUE(parsed.at("totalWatts").is_null());
    EXPECT_EQ(parsed.at("totalWattsReason"), "infinite");
    EXPECT_TRUE(parsed.at("offchipWatts").is_null());
    EXPECT_EQ(parsed.at("offchipWattsReason"), "not a number");
    EXPECT_EQ(parsed.at("sides")[0].at("largestThetaJAReason"), "infinite");
    EXPECT_FALSE(parsed.contains("dynamicWattsReason"));
    EXPECT_EQ(parsed.at("dynamicWatts"), estimate.dynamicWatts);
}

TEST(Report, RunawayBreaksJunctionBudgetsAndStaysValidJson)
{
    const Estimate estimate = estimateOf(R"({"device": {"part": "zq4410"}, "budgets": {"junctionTemperature": 125},
        "environment": {"ambientTemperature": 100, "thetaJA": 50}, "groups": []})");
    EXPECT_TRUE(estimate.budgetBroken());
    const Json parsed = Json::parse(jsonReport(estimate).dump());
    EXPECT_TRUE(parsed.at("budgets")[0].at("actual").is_null());
    EXPECT_EQ(parsed.at("budgets")[0].at("actualReason"), "thermal runaway");
    EXPECT_EQ(parsed.at("budgets")[0].at("broken"), true);
    EXPECT_EQ(parsed.at("budgets")[0].at("words"),
              "junction temperature: none, thermal runaway at TYP, so the limit of 125 degrees can't hold");
    EXPECT_EQ(parsed.at("sides")[0].at("thermal").at("converged"), false);
}

TEST(Report, BudgetsSayInWordsHowFarOffTheyAre)
{
    Estimate estimate = budgeted();
    estimate.budgets = {{"total power", 2.0, 3.5, "W"}, {"current of VCCINT", 10.0, 7.0, "A"}};
    const Json budgets = jsonReport(estimate).at("budgets");
    EXPECT_EQ(budgets[0].at("words"), "total power: 3.5 W, which is 1.5 W above the limit of 2 W");
    EXPECT_EQ(budgets[1].at("words"), "current of VCCINT: 7 A, which is 3 A below the limit of 10 A");
}

TEST(Report, BlocksWithoutPowerOfTheirOwnAreSetApart)
{
    const Estimate estimate = estimateOf(R"({"groups": [{"block": "Clock", "name": "core clock"}]})");
    EXPECT_THAT(textReport(estimate, false), HasSubstr("carry values to others, no power of their own: core clock\n"));
    const Json json = jsonReport(estimate);
    for (const Json& group : json.at("groups"))
        EXPECT_EQ(group.at("onlyCarries"), group.at("block") == "Clock") << group.at("name");
}

TEST(Report, CsvLinesHaveTheHeadersColumns)
{
    std::istringstream csv(csvReport(budgeted()));
    std::string line;
    std::getline(csv, line);
    const std::size_t columns = fieldsOf(line).size();
    EXPECT_EQ(columns, 12u) << line;
    bool quoted = false;
    double dynamic = 0.0;
    while (std::getline(csv, line)) {
        const std::vector<std::string> fields = fieldsOf(line);
        ASSERT_EQ(fields.size(), columns) << line;
        quoted = quoted || fields[2] == "x, y";
        if (fields[0] == "group")
            dynamic += std::stod(fields[7]);
        if (fields[0] == "total") {
            EXPECT_NEAR(std::stod(fields[7]), dynamic, 1e-9 * dynamic) << line;
        }
    }
    EXPECT_TRUE(quoted);
}

TEST(Report, BudgetsKnowIfTheyAreBroken)
{
    const Estimate estimate = budgeted();
    ASSERT_EQ(estimate.budgets.size(), 2u);
    EXPECT_EQ(estimate.budgets[0].name, "total power");
    EXPECT_TRUE(estimate.budgets[0].broken());
    EXPECT_FALSE(estimate.budgets[1].broken());
    EXPECT_TRUE(estimate.budgetBroken());
    EXPECT_TRUE((BudgetResult{"", 1.0, std::nan(""), ""}).broken());
    EXPECT_FALSE((BudgetResult{"", 1.0, 1.0, ""}).broken());
}

TEST(Report, JUnitCountsFailuresAndEscapes)
{
    const std::string xml = junitReport(budgeted());
    EXPECT_THAT(xml, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"a&lt;b &amp; "
                                         "&quot;c&quot;\" tests=\"2\" failures=\"1\">\n"));
    EXPECT_THAT(xml, HasSubstr("<testcase classname=\"budgets\" name=\"total power\">\n    <failure message=\""));
    EXPECT_THAT(xml, HasSubstr("<testcase classname=\"budgets\" name=\"current of VCCINT\"/>"));
    const auto count = [&](std::string_view tag) {
        int found = 0;
        for (std::size_t at = xml.find(tag); at != std::string::npos; at = xml.find(tag, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("<failure "), 1);
    EXPECT_EQ(count("<testcase "), 2);
    EXPECT_EQ(count("</testcase>"), 1);
    EXPECT_THAT(xml, testing::EndsWith("</testsuite>\n"));
}

TEST(Report, TextNamesGroupsRailsAndBrokenBudgets)
{
    const Estimate estimate = budgeted();
    const std::string text = textReport(estimate, false);
    EXPECT_THAT(text, HasSubstr("BROKEN"));
    EXPECT_THAT(text, HasSubstr("kept"));
    EXPECT_THAT(text, HasSubstr("VCCO12"));
    EXPECT_THAT(text, testing::Not(HasSubstr("Origin")));
    EXPECT_THAT(textReport(estimate, true), HasSubstr("Origin"));
}

TEST(Report, TextNeverShowsTheLastTriedTemperatureAsTheJunction)
{
    const std::string text = textReport(estimateOf(R"({"device": {"part": "zq5620"}, "groups": [],
                       "environment": {"ambientTemperature": 80, "cooling": [{"name": "still air", "thetaJA": 30},
                                                                             {"name": "cold plate", "thetaJA": 0.1}]}})"),
                                        false);
    EXPECT_THAT(
        text, HasSubstr("\nPower on the chip: none: thermal runaway, process TYP, 2 warnings\n- process TYP: thermal"));
    EXPECT_THAT(text, testing::ContainsRegex("TYP +none: thermal runaway +none +0.000 W +none\n"));
    EXPECT_THAT(text, testing::ContainsRegex("still air +30.000 +none +thermal runaway"));
    EXPECT_THAT(text, testing::ContainsRegex("cold plate +0.100 +8[0-9.]+ C +[0-9.]+ W +settles"));
    EXPECT_THAT(text, HasSubstr("- process TYP: thermal runaway"));
}

// Every number of the amounts that only a junction temperature gives, in each form of the report.
TEST(Report, ARunawayShowsNoNumberAnywhere)
{
    const Estimate estimate = estimateOf(R"({"device": {"part": "zq5620"},
        "environment": {"ambientTemperature": 80, "thetaJA": 30}, "groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 9}}],
        "budgets": {"totalPower": 5, "junctionTemperature": 100, "rails": {"VCCINT": 9}}, "regulators": {"VCCRAM": {"maxCurrent": 2}}})");
    for (const Side& side : estimate.sides) {
        ASSERT_FALSE(side.settles()) << side.process;
        for (const double amount : {side.junction, side.staticWatts, side.totalWatts, side.thermal->power})
            EXPECT_TRUE(std::isnan(amount)) << side.process << ": " << amount;
    }
    const std::string text = textReport(estimate, false);
    EXPECT_THAT(text, testing::Not(testing::ContainsRegex("inf|nan")));
    EXPECT_THAT(text, testing::ContainsRegex("VCCINT +[0-9.]+ +[0-9.]+ mA +none +none +none +none"));
    EXPECT_THAT(text, testing::ContainsRegex("junction temperature +100 degrees +none: thermal runaway +BROKEN"));

    std::istringstream csv(csvReport(estimate));
    bool total = false;
    for (std::string line; std::getline(csv, line);) {
        EXPECT_THAT(line, testing::Not(testing::ContainsRegex("inf|nan")));
        const std::vector<std::string> fields = fieldsOf(line);
        if (fields[0] == "total") {
            EXPECT_EQ(fields[9], "") << line;
            total = true;
        }
    }
    EXPECT_TRUE(total);

    const std::string xml = junitReport(estimate);
    EXPECT_THAT(xml, testing::Not(testing::ContainsRegex("inf |nan")));
    EXPECT_THAT(xml, HasSubstr("failures=\"4\""));
    EXPECT_THAT(xml, HasSubstr("<failure message=\"total power: none, thermal runaway at TYP, so"));

    const Json json = jsonReport(estimate);
    const auto expectNone = [](const Json& object, const char* name) {
        EXPECT_TRUE(object.at(name).is_null()) << name << " is " << object.at(name);
        EXPECT_EQ(object.at(std::string(name) + "Reason"), "thermal runaway") << name;
    };
    expectNone(json, "totalWatts");
    expectNone(json, "staticWatts");
    for (const Json& side : json.at("sides")) {
        for (const char* name : {"junctionTemperature", "staticWatts", "totalWatts"})
            expectNone(side, name);
        for (const char* name : {"junctionTemperature", "watts", "loopGain"})
            expectNone(side.at("thermal"), name);
    }
    expectNone(json.at("cooling")[0].at("point"), "junctionTemperature");
    expectNone(json.at("budgets")[0], "actual");
    expectNone(json.at("regulators")[0], "marginAmperes");
}

TEST(Report, WarningsAreCountedInTheHeadlineAndStandBelowIt)
{
    Estimate estimate = budgeted();
    estimate.warnings.clear();
    EXPECT_THAT(textReport(estimate, false), testing::Not(HasSubstr("warning")));
    estimate.warnings = {"first thing", "second thing"};
    EXPECT_THAT(textReport(estimate, false), HasSubstr(", 2 warnings\n- first thing\n- second thing\n\nGroups\n"));
    estimate.warnings.pop_back();
    EXPECT_THAT(textReport(estimate, false), HasSubstr(", 1 warning\n- first thing\n\nGroups\n"));
}

// The limit is 10; what both sides come to, and which counts.
struct Judged {
    double typ;
    double max;
    const char* judgedAt;
    bool broken;
    const char* verdict;
    const char* words; ///< how the words begin, after the name
};

TEST(Report, BudgetsAreJudgedOnTheWorseSideUnlessOneIsNamed)
{
    const double none = std::nan("");
    const Judged rows[] = {
        {7, 9, "", false, "kept", "9 W at MAX, which is 1 W below"},
        {7, 12, "", true, "kept at TYP, BROKEN at MAX", "12 W at MAX, which is 2 W above"},
        {12, 7, "", true, "kept at MAX, BROKEN at TYP", "12 W at TYP, which is 2 W above"},
        {12, 13, "", true, "BROKEN", "13 W at MAX, which is 3 W above"},
        {7, 12, "TYP", false, "kept at TYP", "7 W at TYP, which is 3 W below"},
        {7, 12, "MAX", true, "BROKEN at MAX", "12 W at MAX, which is 2 W above"},
        {7, none, "", true, "kept at TYP, BROKEN at MAX", "none, thermal runaway at MAX"},
        {7, none, "TYP", false, "kept at TYP", "7 W at TYP"},
        {none, none, "", true, "BROKEN", "none, thermal runaway at TYP"},
    };
    for (const Judged& row : rows) {
        const BudgetResult budget{"power", 10.0, row.typ, "W", row.max, "TYP", "MAX", row.judgedAt};
        const std::string where = std::to_string(row.typ) + " " + std::to_string(row.max) + " " + row.judgedAt;
        EXPECT_EQ(budget.broken(), row.broken) << where;
        EXPECT_EQ(budget.verdict(), row.verdict) << where;
        EXPECT_THAT(budget.words(), testing::StartsWith(std::string("power: ") + row.words)) << where;
    }
}

TEST(HtmlNumbers, HaveFourDigitsAndAPrefix)
{
    const double none = std::nan("");
    EXPECT_EQ(htmlAmount(41.6854, "W"), "41.69 W");
    EXPECT_EQ(htmlAmount(9.9996, "W"), "10.00 W");
    EXPECT_EQ(htmlAmount(99.996, "W"), "100.0 W");
    EXPECT_EQ(htmlAmount(-0.00123, "A"), "−1.230 mA");
    EXPECT_EQ(htmlAmount(4.2e-15, "A"), "0.004 pA");
    EXPECT_EQ(htmlAmount(0.0, "W"), "0.000 W");
    EXPECT_EQ(htmlAmount(none, "W"), "no value");
    EXPECT_EQ(htmlDegrees(-4.0), "−4.00 °C");
    EXPECT_EQ(htmlDegrees(none), "none");
    EXPECT_EQ(htmlShare(1.0, 8.0) + htmlShare(1.0, 0.0) + htmlShare(none, 1.0), "12.5 %");
    EXPECT_EQ(htmlCount(999.0), "999");
    EXPECT_EQ(htmlCount(1234567.0), "1\u202f234\u202f567");
    EXPECT_EQ(htmlCount(1234.5), "1234.5");
}

TEST(HtmlNumbers, OfAColumnShareTheirUnitAndDecimals)
{
    // The largest, 32.9, has two digits in front of the point: three decimals make five digits of it.
    const HtmlScale watts({0.004, 32.9, std::nan("")}, "W");
    EXPECT_EQ(watts.unit(), "W");
    EXPECT_EQ(watts.text(32.9), "32.900");
    EXPECT_EQ(watts.text(0.004), "0.004");
    EXPECT_EQ(watts.text(0.0004), "&lt; 0.001");
    EXPECT_EQ(watts.text(0.0), "0.000");
    EXPECT_EQ(watts.text(std::nan("")), "");
    const HtmlScale amperes({0.0329}, "A");
    EXPECT_EQ(amperes.unit() + " " + amperes.text(-0.0329), "mA −32.900");
}

TEST(HtmlTable, HoldsRowsWithTheirFoot)
{
    HtmlTable table{"a < b", {{"Rail", "t"}, {"Power, W"}}};
    table.rows.push_back({{"<b>x</b>", "1"}, " class=\"default\""});
    table.foot = {{"Total", "1"}};
    EXPECT_EQ(
        table.html(),
        "<div class=\"scroll\"><table><caption>a &lt; b</caption><thead><tr><th class=\"t\" scope=\"col\">Rail</th>"
        "<th scope=\"col\">Power, W</th></tr></thead><tbody>\n"
        "<tr class=\"default\"><th class=\"t\" scope=\"row\"><b>x</b></th><td>1</td></tr>\n"
        "</tbody><tfoot><tr><th class=\"t\" scope=\"row\">Total</th><td>1</td></tr>\n"
        "</tfoot></table></div>\n");
}

TEST(HtmlReport, SaysWhereItComesFrom)
{
    const Estimate estimate = budgeted();
    // The digest of "abc" is the standard's own example.
    const Provenance made = provenanceOf(estimate.design, "/some/where/d&d.json", "abc");
    EXPECT_EQ(made.file, "d&d.json");
    EXPECT_EQ(made.sha256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(provenanceOf(estimate.design, "-", "abc").file, "standard input");
    const std::string page = htmlReport(estimate, {"d&d.json", made.sha256, {{"part.json", "12ab"}}, "1971-01-02"});
    for (const std::string& words :
         {"<td class=\"t\">d&amp;d.json</td><td class=\"t\"><code>" + made.sha256 + "</code></td>",
          std::string("<td class=\"t\">part.json</td><td class=\"t\"><code>12ab</code></td>"),
          std::string("from d&amp;d.json, 1971-01-02."),
          std::string("<title>a&lt;b &amp; &quot;c&quot;: power estimate</title>")})
        EXPECT_THAT(page, HasSubstr(words));
    EXPECT_EQ(page, htmlReport(estimate, {"d&d.json", made.sha256, {{"part.json", "12ab"}}, "1971-01-02"}));
}

} // namespace

} // namespace zelm::test::reportTest
