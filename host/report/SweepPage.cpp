#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/HtmlPage.h"
#include "host/report/SweepReport.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace zelm::host {

// What is drawn over the points of a sweep, in their order.
struct PageLine {
    std::string name;
    std::vector<double> values;
};
struct PageBudget {
    std::string name;
    std::vector<double> limits;
};
struct PageChart {
    std::string title;
    std::string unit;
    std::vector<PageLine> lines;
    std::vector<PageBudget> budgets{};
};

namespace {

// More of them say less than a map.
constexpr std::size_t kFewLines = 6;
constexpr std::size_t kMostMultiples = 24;

constexpr const char* kGrid = "<div style=\"display:grid;gap:14px;"
                              "grid-template-columns:repeat(auto-fit,minmax(min(100%,340px),1fr))\">\n";

bool sameValues(const std::vector<double>& a, const std::vector<double>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

// ---- What is drawn ----

template <class Get>
std::vector<double> valuesOf(const std::vector<SweepPoint>& points, Get get)
{
    std::vector<double> values;
    values.reserve(points.size());
    for (const SweepPoint& point : points)
        values.push_back(get(point));
    return values;
}

// Without columns, the totals and junctions.
std::vector<PageChart> usualCharts(const std::vector<SweepPoint>& points)
{
    std::vector<PageChart> charts{{"total", "W", {}}, {"junction", "C", {}}};
    for (std::size_t i = 0; i < points.front().sides.size(); ++i) {
        const std::string& process = points.front().sides[i].process;
        const auto side = [i](const SweepPoint& point) -> const SweepSide& { return point.sides[i]; };
        charts[0].lines.push_back({process, valuesOf(points, [&](const auto& p) { return side(p).totalWatts; })});
        charts[1].lines.push_back({process, valuesOf(points, [&](const auto& p) {
                                       return side(p).settles ? side(p).junction
                                                              : std::numeric_limits<double>::quiet_NaN();
                                   })});
    }
    return charts;
}

// Those that differ by process side alone share a chart.
std::vector<PageChart> columnCharts(const std::vector<SweepColumn>& columns, const std::vector<SweepPoint>& points)
{
    std::vector<PageChart> charts;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string& name = columns[i].name;
        const std::string& process = columns[i].budget.empty() ? columns[i].quantity.process : columns[i].process;
        const bool hasSide = !process.empty() && name.ends_with("@" + process);
        const std::string title = hasSide ? name.substr(0, name.size() - process.size() - 1) : name;
        auto chart = std::find_if(charts.begin(), charts.end(), [&](const PageChart& c) { return c.title == title; });
        if (chart == charts.end())
            chart = charts.insert(chart, {title, columns[i].unit, {}});
        chart->lines.push_back(
            {hasSide ? process : "", valuesOf(points, [i](const SweepPoint& point) { return point.columns[i]; })});
    }
    return charts;
}

// A budget belongs to the line that it judges; one that judges none of them, to a chart of its own.
void addBudgets(const std::vector<SweepPoint>& points, std::vector<PageChart>& charts)
{
    const std::vector<SweepBudget>& budgets = points.front().budgets;
    const auto isThere = [&](const SweepPoint& point) { return point.budgets.size() == budgets.size(); };
    if (!std::all_of(points.begin(), points.end(), isThere))
        return;
    for (std::size_t i = 0; i < budgets.size(); ++i) {
        const SweepBudget& budget = budgets[i];
        const auto actual = valuesOf(points, [i](const SweepPoint& point) { return point.budgets[i].actual; });
        const auto judges = [&](const PageChart& chart) {
            return chart.unit == budget.unit &&
                   std::any_of(chart.lines.begin(), chart.lines.end(),
                               [&](const PageLine& line) { return sameValues(line.values, actual); });
        };
        auto chart = std::find_if(charts.begin(), charts.end(), judges);
        if (chart == charts.end()) {
            const auto isOwn = [&](const PageChart& c) { return c.title == budget.name; };
            chart = std::find_if(charts.begin(), charts.end(), isOwn);
            if (chart == charts.end())
                chart = charts.insert(chart, {budget.name, budget.unit, {}});
            chart->lines.push_back({budget.process, actual});
        }
        const auto isKnown = [&](const PageBudget& known) { return known.name == budget.name; };
        if (std::none_of(chart->budgets.begin(), chart->budgets.end(), isKnown))
            chart->budgets.push_back(
                {budget.name, valuesOf(points, [i](const SweepPoint& point) { return point.budgets[i].limit; })});
    }
}

// ---- Drawing ----

struct Span {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void take(double value)
    {
        if (std::isfinite(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    double share(double value) const
    {
        return high > low ? (value - low) / (high - low) : 0.5;
    }
    bool isEmpty() const
    {
        return !(low <= high);
    }
};

// Of all that a chart draws, with a little room.
Span rangeOf(const PageChart& chart)
{
    Span range;
    for (const PageLine& line : chart.lines) {
        for (const double value : line.values)
            range.take(value);
    }
    for (const PageBudget& budget : chart.budgets) {
        for (const double value : budget.limits)
            range.take(value);
    }
    if (range.isEmpty())
        return {0.0, 1.0};
    constexpr double room = 0.06;
    const double margin = range.high > range.low ? (range.high - range.low) * room : std::fabs(range.low) * room + 1e-9;
    return {range.low - margin, range.high + margin};
}

// Round numbers across a range.
std::vector<double> ticksOf(const Span& range, double most)
{
    const double rough = (range.high - range.low) / most;
    const double decade = std::pow(10.0, std::floor(std::log10(rough)));
    double step = 10.0 * decade;
    for (const double factor : {5.0, 2.0, 1.0}) {
        if (factor * decade >= rough)
            step = factor * decade;
    }
    std::vector<double> ticks;
    const double first = std::ceil(range.low / step);
    for (int i = 0; (first + i) * step <= range.high; ++i)
        ticks.push_back((first + i) * step + 0.0); // no -0
    return ticks;
}

constexpr double kWidth = 420.0;
constexpr double kHeight = 250.0;
constexpr double kLeft = 52.0;
constexpr double kRight = 12.0;
constexpr double kTop = 14.0;
constexpr double kBottom = 38.0;

struct Dash {
    const char* color;
    const char* dashes;
};
// Told apart without colours too.
constexpr std::array<Dash, 4> kDashes{{{"static", "none"}, {"dynamic", "7 3"}, {"good", "2 3"}, {"mark", "9 3 2 3"}}};

std::string svgText(double x, double y, const char* anchor, const std::string& text, const char* color = "soft")
{
    return fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\" style=\"fill:var(--{})\">{}</text>\n", x, y,
                       anchor, color, htmlText(text));
}

std::string svgLine(double x1, double y1, double x2, double y2, const std::string& style)
{
    return fmt::format("<line x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\" style=\"{}\"/>\n", x1, y1, x2, y2,
                       style);
}

std::string svgOpen(double height, const std::string& title)
{
    return fmt::format("<svg viewBox=\"0 0 {} {:.0f}\" role=\"img\" aria-label=\"{}\" style=\"width:100%;height:auto;"
                       "max-width:600px;font-size:12px\">\n",
                       kWidth, height, htmlText(title));
}

// The variation along which lines go.
class Axis {
public:
    explicit Axis(const Variation& variation) : m_name(sweepName(variation))
    {
        m_isLine = variation.count > 1;
        for (std::size_t i = 0; i < variation.count; ++i) {
            const Json value = variation.value(i);
            m_isLine = m_isLine && value.is_number();
            m_words.push_back(abbreviated(sweepWord(value), 16));
            m_at.push_back(value.is_number() ? value.get<double>() : 0.0);
        }
        if (!m_isLine) { // words, one beside the other
            for (std::size_t i = 0; i < m_at.size(); ++i)
                m_at[i] = static_cast<double>(i);
        }
        for (const double at : m_at)
            m_span.take(at);
    }

    const std::string& name() const
    {
        return m_name;
    }
    std::size_t count() const
    {
        return m_at.size();
    }
    double xOf(double value) const
    {
        return kLeft + m_span.share(value) * (kWidth - kLeft - kRight);
    }
    double x(std::size_t index) const
    {
        return xOf(m_at[index]);
    }
    std::string svg(double bottom) const
    {
        constexpr double most = 6.0;
        std::string text;
        if (m_isLine && m_span.high > m_span.low) {
            for (const double tick : ticksOf(m_span, most))
                text += svgText(xOf(tick), bottom + 14.0, "middle", fmt::format("{:g}", tick));
        } else {
            const std::size_t every = m_words.size() / static_cast<std::size_t>(most) + 1;
            for (std::size_t i = 0; i < m_words.size(); i += every)
                text += svgText(x(i), bottom + 14.0, "middle", m_words[i]);
        }
        return text +
               svgText((kLeft + kWidth - kRight) / 2.0, bottom + 30.0, "middle", abbreviated(m_name, 60), "text");
    }

private:
    std::string m_name;
    bool m_isLine = false;
    std::vector<std::string> m_words;
    std::vector<double> m_at;
    Span m_span;
};

double yOf(const Span& range, double value)
{
    return kTop + (1.0 - range.share(value)) * (kHeight - kTop - kBottom);
}

// Stretches of what is known.
std::string polyline(const Axis& axis, const Span& range, const std::vector<double>& values, std::size_t begin,
                     const std::string& style)
{
    std::string text;
    std::string stretch;
    const auto end = [&] {
        if (!stretch.empty())
            text +=
                fmt::format("<polyline points=\"{}\" style=\"fill:none;stroke-linecap:round;{}\"/>\n", stretch, style);
        stretch.clear();
    };
    for (std::size_t i = 0; i < axis.count(); ++i) {
        const double value = values[begin + i];
        if (std::isnan(value))
            end();
        else
            stretch += fmt::format("{:.1f},{:.1f} ", axis.x(i), yOf(range, value));
    }
    end();
    return text;
}

std::string grid(const Span& range)
{
    constexpr double most = 7.0;
    std::string text;
    for (const double tick : ticksOf(range, most)) {
        const double y = yOf(range, tick);
        text += svgLine(kLeft, y, kWidth - kRight, y, "stroke:var(--line)");
        text += svgText(kLeft - 6.0, y + 4.0, "end", fmt::format("{:g}", tick));
    }
    return text;
}

bool isOf(const PageChart& chart, const SweepCrossing& crossing)
{
    return std::any_of(chart.budgets.begin(), chart.budgets.end(),
                       [&](const PageBudget& budget) { return budget.name == crossing.budget; });
}

// A chart over the last variation, of the points from begin on.
std::string lineChart(const PageChart& chart, const Axis& axis, const Span& range, std::size_t begin,
                      const std::vector<const SweepCrossing*>& crossings)
{
    std::string text = svgOpen(kHeight, fmt::format("{} over {}", chart.title, axis.name()));
    text += grid(range) + axis.svg(kHeight - kBottom);
    for (const PageBudget& budget : chart.budgets) {
        text += polyline(axis, range, budget.limits, begin, "stroke:var(--bad);stroke-width:1.5;stroke-dasharray:4 3");
        if (std::isfinite(budget.limits[begin]))
            text += svgText(kLeft + 4.0, yOf(range, budget.limits[begin]) - 4.0, "start", budget.name, "bad");
    }
    for (std::size_t i = 0; i < chart.lines.size(); ++i) {
        const Dash& dash = kDashes[i % kDashes.size()];
        text += polyline(axis, range, chart.lines[i].values, begin,
                         fmt::format("stroke:var(--{});stroke-width:2;stroke-dasharray:{}", dash.color, dash.dashes));
    }
    bool above = false; // in turn, as neighbours may lie close
    for (const SweepCrossing* crossing : crossings) {
        if (!crossing->value || !isOf(chart, *crossing))
            continue;
        const double x = axis.xOf(*crossing->value);
        const double y = yOf(range, crossing->limit);
        const bool isRight = x > kWidth / 2.0;
        text += fmt::format(
            "<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"4\" style=\"fill:var(--page);stroke:var(--bad);"
            "stroke-width:2\"><title>{}</title></circle>\n",
            x, y, htmlText(fmt::format("{} {} at {:.6g}", crossing->budget, crossing->process, *crossing->value)));
        text += svgText(
            isRight ? x - 7.0 : x + 7.0, above ? y - 6.0 : y + 14.0, isRight ? "end" : "start",
            fmt::format("{:.4g}{}{}", *crossing->value, crossing->process.empty() ? "" : " ", crossing->process),
            "text");
        above = !above;
    }
    return text + "</svg>\n";
}

std::string keyOf(const PageChart& chart)
{
    std::string text;
    for (std::size_t i = 0; i < chart.lines.size(); ++i) {
        const Dash& dash = kDashes[i % kDashes.size()];
        text += fmt::format(
            "<li><svg width=\"26\" height=\"10\" aria-hidden=\"true\">{}</svg>{}</li>",
            svgLine(0.0, 5.0, 26.0, 5.0,
                    fmt::format("stroke:var(--{});stroke-width:2;stroke-dasharray:{}", dash.color, dash.dashes)),
            htmlText(chart.lines[i].name.empty() ? chart.title : chart.lines[i].name));
    }
    for (const PageBudget& budget : chart.budgets)
        text += fmt::format("<li><svg width=\"26\" height=\"10\" aria-hidden=\"true\">{}</svg>{}</li>",
                            svgLine(0.0, 5.0, 26.0, 5.0, "stroke:var(--bad);stroke-width:1.5;stroke-dasharray:4 3"),
                            htmlText("budget: " + budget.name));
    return fmt::format("<ul class=\"key\">{}</ul>\n", text);
}

// The edges between points that keep a chart's budgets and those that break one.
std::string edges(const PageChart& chart, const PageLine& line, std::size_t rows, std::size_t columns, double wide,
                  double high)
{
    const auto keeps = [&](std::size_t row, std::size_t column) {
        const std::size_t point = row * columns + column;
        return std::all_of(chart.budgets.begin(), chart.budgets.end(),
                           [&](const PageBudget& budget) { return line.values[point] <= budget.limits[point]; });
    };
    std::string path;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            const double x = kLeft + wide * static_cast<double>(column);
            const double y = kTop + high * static_cast<double>(rows - row);
            if (column > 0 && keeps(row, column) != keeps(row, column - 1))
                path += fmt::format("M{:.1f} {:.1f}v{:.1f}", x, y, -high);
            if (row > 0 && keeps(row, column) != keeps(row - 1, column))
                path += fmt::format("M{:.1f} {:.1f}h{:.1f}", x, y, wide);
        }
    }
    return path.empty() ? path
                        : fmt::format("<path d=\"{}\" style=\"fill:none;stroke:var(--bad);stroke-width:2\"/>\n", path);
}

// A line's values over two variations, the first one upwards.
std::string heatMap(const PageChart& chart, const PageLine& line, const Variation& up, const Variation& across)
{
    const double wide = (kWidth - kLeft - kRight) / static_cast<double>(across.count);
    const double high = (kHeight - kTop - kBottom) / static_cast<double>(up.count);
    Span range;
    for (const double value : line.values)
        range.take(value);
    std::string text = svgOpen(kHeight, fmt::format("{} {}", chart.title, line.name));
    for (std::size_t row = 0; row < up.count; ++row) {
        for (std::size_t column = 0; column < across.count; ++column) {
            const double value = line.values[row * across.count + column];
            constexpr double palest = 0.06;
            const std::string fill = std::isnan(value) ? std::string("fill:var(--soft)")
                                                       : fmt::format("fill:var(--static);fill-opacity:{:.3f}",
                                                                     palest + (1.0 - palest) * range.share(value));
            text += fmt::format(
                "<rect shape-rendering=\"crispEdges\" x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\" "
                "style=\"{}\"><title>"
                "{}</title></rect>\n",
                kLeft + wide * static_cast<double>(column), kTop + high * static_cast<double>(up.count - 1 - row), wide,
                high, fill,
                htmlText(fmt::format("{}, {}: {}", sweepWord(up.value(row)), sweepWord(across.value(column)),
                                     std::isnan(value) ? "runaway" : amountText(value, chart.unit))));
        }
    }
    text += edges(chart, line, up.count, across.count, wide, high);
    const std::size_t everyRow = up.count / 8 + 1;
    for (std::size_t row = 0; row < up.count; row += everyRow)
        text += svgText(kLeft - 6.0, kTop + high * (static_cast<double>(up.count - 1 - row) + 0.5) + 4.0, "end",
                        abbreviated(sweepWord(up.value(row)), 8));
    const std::size_t everyColumn = across.count / 6 + 1;
    for (std::size_t column = 0; column < across.count; column += everyColumn)
        text += svgText(kLeft + wide * (static_cast<double>(column) + 0.5), kHeight - kBottom + 14.0, "middle",
                        abbreviated(sweepWord(across.value(column)), 12));
    text +=
        svgText((kLeft + kWidth - kRight) / 2.0, kHeight - 8.0, "middle", abbreviated(sweepName(across), 60), "text");
    return text + fmt::format("</svg>\n<p class=\"soft\">Up: {}. From {} (pale) to {} (full){}; grey: runaway.</p>\n",
                              htmlText(sweepName(up)), amountText(range.low, chart.unit),
                              amountText(range.high, chart.unit),
                              chart.budgets.empty() ? "" : "; red: where a budget ends to be kept");
}

std::string figure(const std::string& caption, const std::string& body)
{
    const std::string head =
        caption.empty() ? caption : fmt::format("<figcaption>{}</figcaption>\n", htmlText(caption));
    return fmt::format("<figure>{}{}</figure>\n", head, body);
}

std::string crossingsTable(const Sweep& sweep, const SweepCrossings& crossings)
{
    std::vector<std::vector<std::string>> rows;
    for (const SweepCrossing& crossing : crossings.found())
        rows.push_back({htmlText(crossing.budget), htmlText(crossing.process),
                        htmlText(amountText(crossing.limit, crossing.unit)), crossing.keptBelow ? "below" : "above",
                        htmlText(crossingPlace(sweep, crossing)), htmlText(sweepOthers(sweep, crossing))});
    if (rows.empty())
        return "";
    std::string text =
        htmlTable("Where budgets are crossed", {"<Budget", "<Side", "Limit", "<Kept", "<At", "<While"}, rows);
    if (crossings.more() > 0)
        text += fmt::format("<p class=\"soft\">and at {} more places</p>\n", crossings.more());
    return htmlSection("Budgets", text);
}

} // namespace

SweepPage::SweepPage(const Sweep& sweep, const SweepRun& options)
    : m_sweep(&sweep), m_columns(options.columns), m_crossings(sweep)
{
    if (sweep.points() > kMostPagePoints)
        throw Error(fmt::format("--html: a page shows at most {} points, and this sweep has {}", kMostPagePoints,
                                sweep.points()));
    if (sweep.variations().size() > 2 && sweep.points() / sweep.variations().back().count > kMostMultiples)
        throw Error(fmt::format("--html: a page shows two variations, or more of them with at most {} combinations "
                                "beside the last one",
                                kMostMultiples));
}

void SweepPage::take(std::span<const SweepPoint> points)
{
    m_crossings.take(points);
    m_points.insert(m_points.end(), points.begin(), points.end());
}

// The points that differ by the last variation alone make a chart each.
std::string SweepPage::lines(const PageChart& chart) const
{
    const std::vector<Variation>& variations = m_sweep->variations();
    const Axis axis(variations.back());
    const Span range = rangeOf(chart);
    std::string figures;
    for (std::size_t begin = 0; begin + axis.count() <= m_points.size(); begin += axis.count()) {
        const std::vector<Json>& values = m_points[begin].values;
        std::vector<const SweepCrossing*> here;
        for (const SweepCrossing& crossing : m_crossings.found()) {
            if (crossing.variation + 1 == variations.size() &&
                std::equal(values.begin(), values.end() - 1, crossing.values.begin()))
                here.push_back(&crossing);
        }
        std::vector<std::string> words;
        for (std::size_t i = 0; i + 1 < values.size(); ++i)
            words.push_back(fmt::format("{} = {}", sweepName(variations[i]), sweepWord(values[i])));
        figures += figure(fmt::format("{}", fmt::join(words, ", ")), lineChart(chart, axis, range, begin, here));
    }
    return figures;
}

std::string SweepPage::maps(const PageChart& chart) const
{
    const std::vector<Variation>& variations = m_sweep->variations();
    std::string figures;
    for (const PageLine& line : chart.lines)
        figures += figure(fmt::format("{}{}{} [{}]", chart.title, line.name.empty() ? "" : " @", line.name, chart.unit),
                          heatMap(chart, line, variations.front(), variations.back()));
    return figures;
}

std::string SweepPage::html() const
{
    const std::vector<Variation>& variations = m_sweep->variations();
    std::vector<PageChart> charts = m_columns.empty() ? usualCharts(m_points) : columnCharts(m_columns, m_points);
    addBudgets(m_points, charts);
    const bool isMap = variations.size() == 2 && variations.front().count > kFewLines;
    std::string body;
    for (const PageChart& chart : charts) {
        const std::string figures = isMap ? maps(chart) : keyOf(chart) + kGrid + lines(chart) + "</div>\n";
        body += htmlSection(fmt::format("{} [{}]", chart.title, chart.unit),
                            isMap ? kGrid + figures + "</div>\n" : figures);
    }
    std::vector<std::string> names;
    for (const Variation& variation : variations)
        names.push_back(fmt::format("{} ({} values)", sweepName(variation), variation.count));
    const Json& design = m_sweep->design();
    const auto name = design.find("name");
    return htmlPage(name != design.end() && name->is_string() ? name->get<std::string>() : "Sweep",
                    htmlText(fmt::format("{} points over {}.", m_points.size(), fmt::join(names, " and "))),
                    body + crossingsTable(*m_sweep, m_crossings));
}

} // namespace zelm::host
