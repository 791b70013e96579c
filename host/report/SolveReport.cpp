#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/StudyReports.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

// The answer in one line.
std::string answerOf(const Solution& solution, const Paint& paint)
{
    if (solution.decides) {
        const Crossing& crossing = solution.crossings[*solution.decides];
        return shown(fmt::format("{} {} {}: there {} decides", solution.path, crossing.ends ? "up to" : "from",
                                 solvedValue(solution, crossing.value), solution.limits[crossing.limit].words()));
    }
    if (!solution.kept.empty())
        return paint.good("No crossing: every limit is kept from end to end");
    if (solution.crossings.empty())
        return paint.bad("No crossing: a limit is broken from end to end");
    return paint.bad("No value keeps all limits");
}

std::string amountAt(const Solution& solution, std::size_t limit, double amount)
{
    return std::isnan(amount) ? "none: thermal runaway" : amountText(amount, solution.limits[limit].quantity.unit());
}

} // namespace

std::string solveText(const Solution& solution, const Paint& paint)
{
    std::string text = fmt::format("{}\n{}\n", paint.title(shown(solution.design)), answerOf(solution, paint));
    if (!solution.crossings.empty()) {
        TextTable table({"Crossing at", "Limit", "There", "Kept"});
        for (const Crossing& crossing : solution.crossings)
            table.row({solvedValue(solution, crossing.value), shown(solution.limits[crossing.limit].words()),
                       amountAt(solution, crossing.limit, crossing.amount), crossing.ends ? "below" : "above"});
        text += "\n" + table.text();
    }
    TextTable ends(
        {"Limit", "At " + solvedValue(solution, solution.low), "At " + solvedValue(solution, solution.high)});
    for (std::size_t i = 0; i < solution.limits.size(); ++i)
        ends.row({shown(solution.limits[i].words()), amountAt(solution, i, solution.atLow[i]),
                  amountAt(solution, i, solution.atHigh[i])});
    text += "\n" + ends.text();
    if (solution.kept.size() > 1) {
        text += "\nAll limits are kept";
        for (std::size_t i = 0; i < solution.kept.size(); ++i)
            text += fmt::format("{} from {} to {}", i == 0 ? "" : " and", solvedValue(solution, solution.kept[i].first),
                                solvedValue(solution, solution.kept[i].second));
        text += ".\n";
    }
    return text;
}

Json solveJson(const Solution& solution)
{
    Json json{{"format", kJsonFormat}, {"name", solution.design}, {"path", solution.path}, {"unit", solution.unit}};
    json["whole"] = solution.isWhole;
    json["low"] = solution.low;
    json["high"] = solution.high;
    json["crossings"] = Json::array();
    for (const Crossing& crossing : solution.crossings) {
        const Limit& limit = solution.limits[crossing.limit];
        Json each{{"value", crossing.value},
                  {"quantity", limit.quantity.name()},
                  {"limit", limit.value},
                  {"unit", limit.quantity.unit()}};
        addAmount(each, "amount", crossing.amount);
        each["kept"] = crossing.ends ? "below" : "above";
        json["crossings"].push_back(std::move(each));
    }
    json["decides"] =
        solution.decides ? Json(solution.limits[solution.crossings[*solution.decides].limit].words()) : Json(nullptr);
    if (solution.decides)
        json["value"] = solution.crossings[*solution.decides].value;
    for (const char* end : {"atLow", "atHigh"}) {
        const std::vector<double>& amounts = std::string_view(end) == "atLow" ? solution.atLow : solution.atHigh;
        json[end] = Json::object();
        for (std::size_t i = 0; i < solution.limits.size(); ++i)
            addAmount(json[end], solution.limits[i].quantity.name(), amounts[i]);
    }
    json["kept"] = Json::array();
    for (const auto& [from, to] : solution.kept)
        json["kept"].push_back({{"from", from}, {"to", to}});
    return json;
}

} // namespace zelm::host
