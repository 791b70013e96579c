#include "host/report/SweepReport.h"

#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <optional>

namespace zelm::host {

namespace {

// ---- Tables ----

// Columns are as wide as the first points need them, so that memory doesn't depend on the number of points.
class SweepTable {
public:
    SweepTable(const Sweep& sweep, const Paint& paint, const std::function<void(std::string_view)>& print)
        : m_sweep(&sweep), m_paint(&paint), m_print(&print)
    {
    }

    void take(std::span<const SweepPoint> points)
    {
        constexpr std::size_t enough = 1000; // points that tell how wide columns are
        for (const SweepPoint& point : points) {
            if (!m_table)
                m_table.emplace(header(point));
            m_table->row(row(point));
            for (const std::string& warning : point.warnings)
                count(shown(warning));
        }
        m_points += points.size();
        if (m_points >= enough)
            (*m_print)(m_table->next());
    }

    void end()
    {
        if (!m_table)
            return;
        (*m_print)(m_table->next());
        for (const auto& [warning, times] : m_warnings)
            (*m_print)(m_paint->warning(fmt::format("- {} (at {} of {} points)", warning, times, m_points)) + "\n");
        if (m_otherWarnings > 0)
            (*m_print)(m_paint->warning(fmt::format("- and {} more", m_otherWarnings)) + "\n");
    }

private:
    // Warnings may tell each point's own numbers.
    void count(const std::string& warning)
    {
        constexpr std::size_t most = 1000;
        if (const auto known = m_warnings.find(warning); known != m_warnings.end())
            ++known->second;
        else if (m_warnings.size() < most)
            m_warnings.emplace(warning, 1);
        else
            ++m_otherWarnings;
    }

    std::vector<std::string> header(const SweepPoint& first)
    {
        std::vector<std::string> names;
        for (const Variation& variation : m_sweep->variations())
            names.push_back(shown(sweepName(variation)));
        names.emplace_back("Dynamic");
        for (const SweepSide& side : first.sides) {
            const std::string process = side.process.empty() || m_sweep->variesProcess() ? "" : side.process + " ";
            names.insert(names.end(), {process + "static", process + "total", process + "junction"});
        }
        if (first.hasBudgets)
            names.emplace_back("Budgets");
        return names;
    }

    std::vector<std::string> row(const SweepPoint& point)
    {
        std::vector<std::string> cells;
        for (const Json& value : point.values)
            cells.push_back(shown(sweepWord(value)));
        cells.push_back(si(point.dynamicWatts, "W"));
        for (const SweepSide& side : point.sides)
            cells.insert(cells.end(), {si(side.staticWatts, "W"), si(side.totalWatts, "W"),
                                       side.settles ? fmt::format("{:.2f} C", side.junction)
                                                    : m_paint->bad("none: thermal runaway")});
        if (point.hasBudgets)
            cells.push_back(point.broken.empty()
                                ? m_paint->good("kept")
                                : m_paint->bad(fmt::format("BROKEN: {}", fmt::join(point.broken, ", "))));
        return cells;
    }

    const Sweep* m_sweep;
    const Paint* m_paint;
    const std::function<void(std::string_view)>* m_print;
    std::optional<TextTable> m_table;
    std::size_t m_points = 0;
    std::map<std::string, std::size_t> m_warnings; // how many points warn of each
    std::size_t m_otherWarnings = 0;
};

// ---- JSON and CSV ----

// One entry of the list, on lines of its own.
std::string jsonEntry(const Sweep& sweep, const SweepPoint& point)
{
    Json entry{{"settings", Json::object()}};
    for (std::size_t i = 0; i < point.values.size(); ++i)
        entry["settings"][sweepName(sweep.variations()[i])] = point.values[i];
    addNumber(entry, "dynamicWatts", point.dynamicWatts);
    addNumber(entry, "offchipWatts", point.offchipWatts);
    entry["sides"] = Json::array();
    for (const SweepSide& side : point.sides) {
        Json each{{"process", side.process}};
        addAmount(each, "junctionTemperature", side.junction);
        addAmount(each, "staticWatts", side.staticWatts);
        addAmount(each, "totalWatts", side.totalWatts);
        each["settles"] = side.settles;
        entry["sides"].push_back(std::move(each));
    }
    entry["budgetsBroken"] = point.broken;
    entry["warnings"] = point.warnings;
    const std::string list = jsonText(Json::array({std::move(entry)})); // "[\n", the entry, "\n]\n"
    return ",\n" + list.substr(2, list.size() - 5);
}

std::string csvHeader(const Sweep& sweep)
{
    std::string text;
    for (const Variation& variation : sweep.variations())
        text += escapedCsv(sweepName(variation)) + ",";
    return text + "process,dynamic_w,static_w,total_w,junction_c,settles,budgets_broken\n";
}

std::string csvRows(const SweepPoint& point)
{
    std::string settings;
    for (const Json& value : point.values)
        settings += escapedCsv(sweepWord(value)) + ",";
    std::string text;
    for (const SweepSide& side : point.sides)
        text += fmt::format("{}{},{},{},{},{},{},{}\n", settings, side.process, point.dynamicWatts,
                            csvNumber(side.staticWatts), csvNumber(side.totalWatts), csvNumber(side.junction),
                            side.settles ? "yes" : "no", escapedCsv(fmt::format("{}", fmt::join(side.broken, "; "))));
    return text;
}

} // namespace

std::size_t printSweep(const Sweep& sweep, const SweepRun& options, SweepFormat format, const Paint& paint,
                       const std::function<void(std::string_view)>& print)
{
    std::size_t warned = 0;
    const auto run = [&](const Sweep::Render& render, const auto& take) {
        sweep.run(options, render, [&](std::span<const SweepPoint> points, const std::string& text) {
            warned += static_cast<std::size_t>(std::count_if(
                points.begin(), points.end(), [](const SweepPoint& point) { return !point.warnings.empty(); }));
            take(points, text);
        });
    };
    switch (format) {
    case SweepFormat::json: {
        bool first = true;
        run([&](const SweepPoint& point) { return jsonEntry(sweep, point); },
            [&](std::span<const SweepPoint>, const std::string& text) {
                print(first ? fmt::format("{{\n  \"format\": {},\n  \"points\": [{}", kJsonFormat, text.substr(1))
                            : text);
                first = false;
            });
        print(Interrupt::signal() == 0 ? "\n]\n}\n" : "\n"); // cut short it is no list, but whole lines
        break;
    }
    case SweepFormat::csv: {
        bool first = true;
        run(csvRows, [&](std::span<const SweepPoint>, const std::string& text) {
            print(first ? csvHeader(sweep) + text : text);
            first = false;
        });
        break;
    }
    case SweepFormat::table: {
        SweepTable table(sweep, paint, print);
        run([](const SweepPoint&) { return std::string(); },
            [&](std::span<const SweepPoint> points, const std::string&) { table.take(points); });
        table.end();
        break;
    }
    }
    return warned;
}

} // namespace zelm::host
