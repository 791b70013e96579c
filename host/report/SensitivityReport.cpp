#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/HtmlPage.h"
#include "host/report/StudyReports.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

std::string wordOf(const std::variant<double, std::string>& value, const std::string& unit)
{
    if (const auto* word = std::get_if<std::string>(&value))
        return *word;
    return fmt::format("{:.6g}{}{}", std::get<double>(value), unit.empty() ? "" : " ", unit);
}

Json jsonOf(const std::variant<double, std::string>& value)
{
    const auto* word = std::get_if<std::string>(&value);
    return word ? Json(*word) : Json(std::get<double>(value));
}

// Null with the reason beside it where there is none.
void addChange(Json& object, const std::string& name, const Move& move)
{
    object[name] = std::isnan(move.change) ? Json(nullptr) : Json(move.change);
    if (!move.why.empty())
        object[name + "Reason"] = move.why;
}

std::string changeText(const Move& move, std::string_view unit)
{
    if (!move.why.empty())
        return move.why == "thermal runaway" ? "runs away" : "refused";
    return move.change == 0.0 ? "0" : fmt::format("{}{}", move.change > 0.0 ? "+" : "", amountText(move.change, unit));
}

std::string elasticityText(const SensitivityRow& row)
{
    if (row.value.index() == 1)
        return fmt::format("{} words", row.words.size());
    return (row.elasticity ? fmt::format("{:.3f}", *row.elasticity) : std::string("none")) + (row.agrees ? "" : " *");
}

std::string leadOf(const Sensitivity& all)
{
    return fmt::format("{} is {}. Each input moves by {:g} % of itself, alone; a word takes every legal other.",
                       all.quantity.name(), amountText(all.nominal, all.quantity.unit()), 100.0 * all.span);
}

constexpr const char* kBends = "the quantity has a step or a bend within the span: it isn't proportional there";

} // namespace

std::string sensitivityText(const Sensitivity& all, std::size_t top)
{
    TextTable table({"Input", "Value", "From", "Minus", "Plus", "%/%"});
    const std::string_view unit = all.quantity.unit();
    bool bends = false;
    for (std::size_t i = 0; i < std::min(top, all.rows.size()); ++i) {
        const SensitivityRow& row = all.rows[i];
        bends = bends || !row.agrees;
        table.row({shown(row.path), shown(wordOf(row.value, row.unit)), row.origin, changeText(row.minus, unit),
                   changeText(row.plus, unit), elasticityText(row)});
    }
    std::string text = fmt::format("{}\n{}\n\n{}", shown(all.design), wrapped(shown(leadOf(all)), 100), table.text());
    if (bends)
        text += fmt::format("* {}\n", kBends);
    text += fmt::format("{} of {} inputs{}\n", std::min(top, all.rows.size()), all.rows.size(),
                        all.atZero > 0 ? fmt::format("; {} are 0, which no percentage moves", all.atZero) : "");
    if (!all.findOutNext.empty())
        text += "\nFind these out next: nobody set them, and they move the answer\n";
    for (const std::size_t i : all.findOutNext) {
        const SensitivityRow& row = all.rows[i];
        text += shown(fmt::format("- {} = {} by default: {} to {}", row.path, wordOf(row.value, row.unit),
                                  changeText(row.minus, unit), changeText(row.plus, unit))) +
                "\n";
    }
    return text;
}

Json sensitivityJson(const Sensitivity& all, std::optional<std::size_t> top)
{
    Json rows = Json::array();
    for (std::size_t i = 0; i < std::min(top.value_or(all.rows.size()), all.rows.size()); ++i) {
        const SensitivityRow& row = all.rows[i];
        Json each{{"path", row.path}, {"value", jsonOf(row.value)}, {"unit", row.unit}, {"origin", row.origin}};
        addChange(each, "minus", row.minus);
        addChange(each, "plus", row.plus);
        each["minusTo"] = jsonOf(row.minus.to);
        each["plusTo"] = jsonOf(row.plus.to);
        each["words"] = Json::array();
        for (const Move& move : row.words) {
            each["words"].push_back({{"word", jsonOf(move.to)}});
            addChange(each["words"].back(), "change", move);
        }
        const auto addSlope = [&](const char* name, const std::optional<double>& slope) {
            each[name] = slope ? Json(*slope) : Json(nullptr);
        };
        addSlope("elasticity", row.elasticity);
        addSlope("overSpan", row.overSpan);
        each["agrees"] = row.agrees;
        rows.push_back(std::move(each));
    }
    Json next = Json::array();
    for (const std::size_t i : all.findOutNext)
        next.push_back(all.rows[i].path);
    return {{"format", kJsonFormat},           {"name", all.design},
            {"quantity", all.quantity.name()}, {"unit", all.quantity.unit()},
            {"nominal", all.nominal},          {"span", all.span},
            {"rows", std::move(rows)},         {"findOutNext", std::move(next)}};
}

std::string sensitivityHtml(const Sensitivity& all, std::size_t top)
{
    const std::string_view unit = all.quantity.unit();
    const std::size_t shownRows = std::min(top, all.rows.size());
    const double most = shownRows > 0 ? all.rows.front().largest() : 0.0;
    const auto amountOf = [](const Move& move) { return std::isnan(move.change) ? 0.0 : move.change; };
    const auto rowOf = [&](const SensitivityRow& row, bool drawn) {
        const std::string minus = changeText(row.minus, unit);
        const std::string plus = changeText(row.plus, unit);
        std::vector<std::string> cells{htmlText(row.path), htmlText(wordOf(row.value, row.unit)), row.origin, minus};
        if (drawn)
            cells.push_back(htmlBars({{0.0, amountOf(row.minus), "static"}, {0.0, amountOf(row.plus), "dynamic"}},
                                     -most, most, fmt::format("{} to {}", minus, plus)));
        cells.insert(cells.end(), {plus, elasticityText(row)});
        return cells;
    };
    std::vector<std::vector<std::string>> tornado;
    std::vector<std::vector<std::string>> every;
    std::vector<std::vector<std::string>> next;
    for (std::size_t i = 0; i < all.rows.size(); ++i) {
        every.push_back(rowOf(all.rows[i], false));
        if (i < shownRows)
            tornado.push_back(rowOf(all.rows[i], true));
    }
    for (const std::size_t i : all.findOutNext)
        next.push_back(rowOf(all.rows[i], false));
    const std::vector<std::string> headings{"<Input", "Value", "<From", "Minus", "Plus", "%/%"};
    std::string body = htmlSection(
        "What moves the answer most",
        htmlTable("Tornado", {"<Input", "Value", "<From", "Minus", "<", "Plus", "%/%"}, tornado) +
            fmt::format("<p class=\"soft\">%/% is the percentage that the quantity changes by for each of the input. "
                        "A star: {}.</p>\n",
                        kBends));
    if (!next.empty())
        body += htmlSection("Find these out next", "<p>Nobody set these, and they move the answer.</p>\n" +
                                                       htmlTable("Defaults that count", headings, next));
    body += htmlSection("All inputs", htmlTable("All inputs", headings, every));
    return htmlPage(all.design + ": sensitivity", htmlText(leadOf(all)), body);
}

} // namespace zelm::host
