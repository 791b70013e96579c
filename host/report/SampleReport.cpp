#include "host/report/SampleReport.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

std::string amount(double value, std::string_view unit)
{
    return std::isnan(value) ? "runs away" : amountText(value, unit == "degrees" ? "C" : unit);
}

std::string percent(double share)
{
    return fmt::format("{:.2f} %", 100.0 * share);
}

std::string quantitiesTable(const Sample& sample)
{
    TextTable table({"Quantity", "P5", "P50", "P95", "Mean", "SD", "Error P5", "Error P50", "Error P95"});
    for (const SampledQuantity& each : sample.quantities) {
        const std::string_view unit = each.quantity.unit();
        const Band& band = each.band;
        const auto error = [&](double value) {
            return std::isnan(value) ? std::string("none") : amountText(value, unit);
        };
        table.row({shown(each.quantity.name()), amount(band.p5, unit), amount(band.p50, unit), amount(band.p95, unit),
                   amount(band.mean, unit), error(band.sd), error(band.p5Error), error(band.p50Error),
                   error(band.p95Error)});
    }
    return table.text();
}

std::string budgetsTable(const Sample& sample, const Paint& paint)
{
    TextTable table({"Budget", "Limit", "Process", "P5", "P50", "P95", "Kept"});
    for (const SampledBudget& budget : sample.budgets) {
        for (const SampledBudget::Side& side : budget.sides) {
            const bool isFirst = &side == &budget.sides.front();
            const std::string kept = percent(side.probabilityKept);
            table.row({isFirst ? shown(budget.name) : "", isFirst ? amount(budget.limit, budget.unit) : "",
                       side.process, amount(side.band.p5, budget.unit), amount(side.band.p50, budget.unit),
                       amount(side.band.p95, budget.unit), side.probabilityKept < 1.0 ? paint.bad(kept) : kept});
        }
    }
    return table.text();
}

std::string causesText(const Sample& sample)
{
    const bool isRanks = sample.indices.empty();
    TextTable table(isRanks ? std::vector<std::string>{"Input", "Rank correlation"}
                            : std::vector<std::string>{"Input", "Alone", "With others"});
    constexpr std::size_t most = 20;
    const std::vector<SampledIndex>& rows = isRanks ? sample.correlations : sample.indices;
    for (std::size_t i = 0; i < std::min(most, rows.size()); ++i) {
        std::vector<std::string> cells{shown(rows[i].path), fmt::format("{:.3f}", rows[i].first)};
        if (!isRanks)
            cells.push_back(fmt::format("{:.3f}", rows[i].total));
        table.row(cells);
    }
    if (rows.empty())
        return {};
    std::string text = fmt::format("\nWhat makes the band of {}\n\n{}", shown(sample.of.name()), table.text());
    if (rows.size() > most)
        text += fmt::format("and {} more\n", rows.size() - most);
    return text + (isRanks ? "indices take 2000 points or more\n"
                           : fmt::format("shares of the variance, from {} estimates beyond the points\n",
                                         sample.indexEstimates));
}

Json bandJson(const Band& band)
{
    Json json = Json::object();
    addAmount(json, "mean", band.mean);
    addAmount(json, "sd", band.sd);
    addAmount(json, "p5", band.p5);
    addAmount(json, "p50", band.p50);
    addAmount(json, "p95", band.p95);
    addAmount(json, "meanError", band.meanError);
    addAmount(json, "p5Error", band.p5Error);
    addAmount(json, "p50Error", band.p50Error);
    addAmount(json, "p95Error", band.p95Error);
    json["runsAway"] = band.lost;
    return json;
}

Json budgetBandsJson(const SampledBudget& budget)
{
    Json sides = Json::array();
    for (const SampledBudget::Side& side : budget.sides) {
        Json own{{"process", side.process}, {"probabilityKept", side.probabilityKept}};
        own.update(bandJson(side.band));
        sides.push_back(std::move(own));
    }
    return {{"name", budget.name},
            {"limit", budget.limit},
            {"unit", budget.unit},
            {"probabilityKept", budget.probabilityKept},
            {"sides", std::move(sides)}};
}

} // namespace

std::string sampleLead(const Sample& sample)
{
    const std::size_t inputs = sample.inputs.size();
    std::string text = fmt::format("{} points, method {}, seed {}: {} distribution{}, {}", sample.points,
                                   methodWord(sample.wish.method), sample.wish.seed, inputs, inputs == 1 ? "" : "s",
                                   sample.data.empty() ? "the data as they are"
                                                       : fmt::format("{} factors of the data", sample.data.size()));
    if (sample.wish.untilError)
        text += fmt::format("; quantiles of totals within {}, {} {}", percent(sample.error),
                            sample.error <= *sample.wish.untilError ? "as wished" : "which isn't yet",
                            percent(*sample.wish.untilError));
    return text;
}

std::string sampleText(const Sample& sample, const Paint& paint)
{
    std::string text = paint.title(shown(sample.design)) + "\n" + sampleLead(sample) + "\n";
    if (const std::size_t lost = sample.quantities.front().band.lost; lost > 0)
        text += paint.warning(fmt::format("- {} of {} points run away on the {} side", lost, sample.points,
                                          sample.quantities.front().quantity.process)) +
                "\n";
    for (const WarningCounts::Row& row : sample.warnings.rows())
        text += paint.warning("- " + warningLine(row, sample.points)) + "\n";
    if (sample.warnings.others() > 0)
        text += paint.warning(fmt::format("- and {} more", sample.warnings.others())) + "\n";
    text += "\n" + quantitiesTable(sample);
    if (!sample.budgets.empty())
        text += "\n" + budgetsTable(sample, paint);
    return text + causesText(sample);
}

Json sampleJson(const Sample& sample)
{
    Json distributions = Json::array();
    for (const Uncertain& input : sample.inputs)
        distributions.push_back({{"path", input.path}, {"distribution", input.distribution.text()}});
    Json data = Json::array();
    for (const DataFactor& factor : sample.data)
        data.push_back({{"name", factor.name()}, {"relative", factor.relative}});
    Json quantities = Json::array();
    for (const SampledQuantity& each : sample.quantities) {
        quantities.push_back({{"quantity", each.quantity.name()}, {"unit", each.quantity.unit()}});
        quantities.back().update(bandJson(each.band));
    }
    Json budgets = Json::array();
    for (const SampledBudget& budget : sample.budgets)
        budgets.push_back(budgetBandsJson(budget));
    Json indices = Json::array();
    for (const SampledIndex& index : sample.indices)
        indices.push_back({{"path", index.path}, {"first", index.first}, {"total", index.total}});
    Json correlations = Json::array();
    for (const SampledIndex& index : sample.correlations)
        correlations.push_back({{"path", index.path}, {"correlation", index.first}});
    Json json{{"format", kJsonFormat},
              {"name", sample.design},
              {"points", sample.points},
              {"seed", sample.wish.seed},
              {"method", methodWord(sample.wish.method)},
              {"distributions", std::move(distributions)},
              {"data", std::move(data)},
              {"quantities", std::move(quantities)},
              {"budgets", std::move(budgets)},
              {"of", sample.of.name()},
              {"indices", std::move(indices)},
              {"indexEstimates", sample.indexEstimates},
              {"rankCorrelations", std::move(correlations)}};
    addAmount(json, "error", sample.error);
    json["warnings"] = Json::array();
    for (const WarningCounts::Row& row : sample.warnings.rows())
        json["warnings"].push_back({{"text", row.text}, {"points", row.points}});
    return json;
}

PointColumns samplePointColumns(const Sample& plan)
{
    using Type = PointColumn::Type;
    PointColumns columns{{"point", "", Type::whole, 0, true}};
    for (const Uncertain& input : plan.inputs) {
        std::size_t width = 0;
        for (const Distribution::Value& value : input.distribution.values) {
            if (const auto* word = std::get_if<std::string>(&value))
                width = std::max(width, word->size());
        }
        columns.push_back({input.path, input.distribution.unit,
                           input.distribution.takesWords() ? Type::text : Type::real, width, true});
    }
    for (const DataFactor& factor : plan.data)
        columns.push_back({fmt::format("data:{}", factor.name()), "", Type::real, 0, true});
    for (const SampledQuantity& each : plan.quantities)
        columns.push_back({each.quantity.name(), std::string(each.quantity.unit()), Type::real, 0, false});
    for (const SampledBudget& budget : plan.budgets)
        columns.push_back({fmt::format("{} kept", budget.name), "", Type::text, 3, false});
    return columns;
}

PointRow samplePointRow(const SamplePoint& point)
{
    PointRow row{static_cast<std::int64_t>(point.index)};
    for (const Distribution::Value& value : point.inputs)
        std::visit([&](const auto& each) { row.emplace_back(each); }, value);
    row.insert(row.end(), point.factors.begin(), point.factors.end());
    row.insert(row.end(), point.quantities.begin(), point.quantities.end());
    for (const bool kept : point.kept)
        row.emplace_back(kept ? "yes" : "no");
    return row;
}

} // namespace zelm::host
