#include "host/base/Text.h"
#include "host/report/HtmlPage.h"
#include "host/report/SampleReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace zelm::host {

namespace {

// The drawing of one quantity: how often it lies where, what share lies below, and its limit.
class BandDrawing {
public:
    BandDrawing(const SampledQuantity& quantity, std::optional<double> limit)
        : m_quantity(&quantity), m_band(&quantity.band), m_limit(limit), m_least(quantity.band.least),
          m_most(quantity.band.most)
    {
        if (m_limit && std::isfinite(*m_limit)) {
            m_least = std::min(m_least, *m_limit);
            m_most = std::max(m_most, *m_limit);
        }
        if (!(m_most > m_least))
            m_most = m_least + 1.0;
    }

    std::string svg() const
    {
        return fmt::format("<svg viewBox=\"0 0 {0} {1}\" style=\"width:100%;max-width:{0}px\" role=\"img\" "
                           "aria-label=\"{2}\"><title>{2}</title>{3}{4}{5}{6}</svg>\n",
                           kWidth, kHeight, htmlText(title()), bars(), curve(), limitLine(), axis());
    }

private:
    static constexpr double kWidth = 640.0;
    static constexpr double kHeight = 240.0;
    static constexpr double kLeft = 10.0;
    static constexpr double kRight = 630.0;
    static constexpr double kTop = 20.0;
    static constexpr double kBottom = 210.0;

    std::string title() const
    {
        const std::string_view unit = m_quantity->quantity.unit();
        return fmt::format("{}: P5 {}, P50 {}, P95 {}", m_quantity->quantity.name(), amountText(m_band->p5, unit),
                           amountText(m_band->p50, unit), amountText(m_band->p95, unit));
    }

    double x(double value) const
    {
        return kLeft + (kRight - kLeft) * (value - m_least) / (m_most - m_least);
    }
    static double y(double share)
    {
        return kBottom - (kBottom - kTop) * share;
    }
    double edge(std::size_t bin) const
    {
        const auto bins = static_cast<double>(m_band->histogram.size());
        return m_band->least + (m_band->most - m_band->least) * static_cast<double>(bin) / bins;
    }

    std::string bars() const
    {
        const std::vector<std::size_t>& counts = m_band->histogram;
        const auto most =
            static_cast<double>(std::max<std::size_t>(1, *std::max_element(counts.begin(), counts.end())));
        std::string text;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            const double top = y(0.9 * static_cast<double>(counts[i]) / most);
            if (counts[i] > 0)
                text += fmt::format("<rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" "
                                    "style=\"fill:var(--static)\"/>",
                                    x(edge(i)), top, std::max(1.0, x(edge(i + 1)) - x(edge(i)) - 1.0), kBottom - top);
        }
        return text;
    }

    // Points that run away are above all others.
    std::string curve() const
    {
        const std::vector<std::size_t>& counts = m_band->histogram;
        const auto all = static_cast<double>(std::accumulate(counts.begin(), counts.end(), m_band->lost));
        std::string points = fmt::format("{:.1f},{:.1f}", x(m_band->least), y(0.0));
        double below = 0.0;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            below += static_cast<double>(counts[i]);
            points += fmt::format(" {:.1f},{:.1f}", x(edge(i + 1)), y(below / all));
        }
        return fmt::format("<polyline points=\"{}\" style=\"fill:none;stroke:var(--dynamic);stroke-width:2\"/>",
                           points);
    }

    std::string limitLine() const
    {
        if (!m_limit)
            return {};
        const double at = x(*m_limit);
        const bool isRight = at > 0.5 * kWidth;
        return fmt::format("<line x1=\"{0:.1f}\" y1=\"{1}\" x2=\"{0:.1f}\" y2=\"{2}\" style=\"stroke:var(--bad);"
                           "stroke-width:2;stroke-dasharray:6 4\"/><text x=\"{3:.1f}\" y=\"14\" text-anchor=\"{4}\" "
                           "style=\"fill:var(--bad);font-size:12px\">budget {5}</text>",
                           at, kTop, kBottom, isRight ? at - 6.0 : at + 6.0, isRight ? "end" : "start",
                           htmlText(amountText(*m_limit, m_quantity->quantity.unit())));
    }

    std::string axis() const
    {
        const std::string_view unit = m_quantity->quantity.unit();
        std::string text = fmt::format(
            "<line x1=\"{0}\" y1=\"{2}\" x2=\"{1}\" y2=\"{2}\" style=\"stroke:var(--soft)\"/>", kLeft, kRight, kBottom);
        const std::pair<double, const char*> ends[] = {
            {m_least, "start"}, {std::midpoint(m_least, m_most), "middle"}, {m_most, "end"}};
        for (const auto& [value, anchor] : ends)
            text += fmt::format("<text x=\"{:.1f}\" y=\"{}\" text-anchor=\"{}\" style=\"fill:var(--soft);"
                                "font-size:12px\">{}</text>",
                                x(value), kBottom + 16.0, anchor, htmlText(amountText(value, unit)));
        return text;
    }

    const SampledQuantity* m_quantity;
    const Band* m_band;
    std::optional<double> m_limit;
    double m_least;
    double m_most;
};

std::optional<double> limitOfBudget(const Sample& sample, std::string_view name)
{
    for (const SampledBudget& budget : sample.budgets) {
        if (budget.name == name)
            return budget.limit;
    }
    return std::nullopt;
}

std::string drawings(const Sample& sample)
{
    using Kind = NamedQuantity::Kind;
    std::string text = "<p class=\"soft\">Bars: how often a value lies there. Curve: the share of points below, from 0 "
                       "to all. Dashed: the budget.</p>\n";
    for (const SampledQuantity& each : sample.quantities) {
        const Kind kind = each.quantity.kind;
        if (kind != Kind::total && kind != Kind::junction)
            continue;
        const bool isDrawn = each.band.most > each.band.least;
        const auto limit = limitOfBudget(sample, kind == Kind::total ? "total power" : "junction temperature");
        text += fmt::format("<h3>{}</h3>\n<p>P5 {}, P50 {}, P95 {}</p>\n{}", htmlText(each.quantity.name()),
                            htmlText(amountText(each.band.p5, each.quantity.unit())),
                            htmlText(amountText(each.band.p50, each.quantity.unit())),
                            htmlText(amountText(each.band.p95, each.quantity.unit())),
                            isDrawn ? BandDrawing(each, limit).svg() : "<p>It is the same in all points.</p>\n");
    }
    return text;
}

std::string bandsOfRails(const Sample& sample)
{
    double most = 0.0;
    for (const SampledQuantity& each : sample.quantities) {
        if (each.quantity.kind == NamedQuantity::Kind::rail && !std::isnan(each.band.p95))
            most = std::max(most, each.band.p95);
    }
    std::vector<std::vector<std::string>> rows;
    for (const SampledQuantity& each : sample.quantities) {
        if (each.quantity.kind != NamedQuantity::Kind::rail)
            continue;
        const Band& band = each.band;
        const auto cell = [](double value) { return htmlText(amountText(value, "A")); };
        const std::string title = fmt::format("{} to {}", amountText(band.p5, "A"), amountText(band.p95, "A"));
        const bool isKnown = !std::isnan(band.p5 + band.p50 + band.p95);
        const std::string bars =
            htmlBars({{band.p5, band.p50, "static"}, {band.p50, band.p95, "dynamic"}}, 0.0, most, title);
        rows.push_back({htmlText(each.quantity.name()), cell(band.p5), isKnown ? bars : "", cell(band.p50),
                        cell(band.p95), cell(band.mean), cell(band.sd)});
    }
    return htmlTable("Currents of rails", {"<Rail", "P5", "<P5 to P50, P50 to P95", "P50", "P95", "Mean", "SD"}, rows);
}

std::string causes(const Sample& sample)
{
    std::vector<std::vector<std::string>> rows;
    for (const SampledIndex& index : sample.indices) {
        const std::string title = fmt::format("alone {:.3f}, with others {:.3f}", index.first, index.total);
        rows.push_back(
            {htmlText(index.path), fmt::format("{:.3f}", index.first),
             htmlBars({{0.0, index.first, "static"}, {index.first, index.total, "dynamic"}}, 0.0, 1.0, title),
             fmt::format("{:.3f}", index.total)});
    }
    for (const SampledIndex& index : sample.correlations)
        rows.push_back({htmlText(index.path), fmt::format("{:.3f}", index.first),
                        htmlBars({{0.0, index.first, "static"}}, -1.0, 1.0, fmt::format("{:.3f}", index.first))});
    if (!sample.indices.empty())
        return htmlTable("Shares of the variance", {"<Input", "Alone", "<", "With others"}, rows) +
               fmt::format("<p class=\"soft\">From {} estimates beyond the points.</p>\n", sample.indexEstimates);
    return htmlTable("How ranks go together", {"<Input", "Rank correlation", "<"}, rows);
}

std::string budgetRows(const Sample& sample)
{
    std::vector<std::vector<std::string>> rows;
    for (const SampledBudget& budget : sample.budgets) {
        const std::string_view unit = budget.unit == "degrees" ? "C" : std::string_view(budget.unit);
        for (const SampledBudget::Side& side : budget.sides)
            rows.push_back({htmlText(budget.name), htmlText(amountText(budget.limit, unit)), htmlText(side.process),
                            htmlText(amountText(side.band.p5, unit)), htmlText(amountText(side.band.p50, unit)),
                            htmlText(amountText(side.band.p95, unit)),
                            fmt::format("{:.2f} %", 100.0 * side.probabilityKept)});
    }
    return htmlTable("Budgets", {"<Budget", "Limit", "<Process", "P5", "P50", "P95", "Kept"}, rows);
}

std::string warningsOf(const Sample& sample)
{
    std::string text = "<ul>\n";
    for (const WarningCounts::Row& row : sample.warnings.rows())
        text += fmt::format("<li>{}</li>\n", htmlText(warningLine(row, sample.points)));
    return text + "</ul>\n";
}

} // namespace

std::string sampleHtml(const Sample& sample)
{
    std::string body;
    if (!sample.warnings.rows().empty())
        body += htmlSection("Warnings", warningsOf(sample));
    body += htmlSection("Totals", drawings(sample));
    if (!sample.budgets.empty())
        body += htmlSection("Budgets", budgetRows(sample));
    body += htmlSection(fmt::format("What makes the band of {}", sample.of.name()), causes(sample));
    body += htmlSection("Rails", bandsOfRails(sample));
    std::vector<std::vector<std::string>> inputs;
    for (const Uncertain& input : sample.inputs)
        inputs.push_back({htmlText(input.path), htmlText(input.distribution.text())});
    for (const DataFactor& factor : sample.data)
        inputs.push_back(
            {htmlText("data:" + factor.name()), fmt::format("log-normal, {:g} %", 100.0 * factor.relative)});
    body += htmlSection("What was drawn", htmlTable("Distributions", {"<Value", "<Distribution"}, inputs));
    return htmlPage(sample.design + ": sample", htmlText(sampleLead(sample)), body);
}

} // namespace zelm::host
