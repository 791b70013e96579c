#include "host/report/SweepReport.h"

#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/study/WarningCounts.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

namespace zelm::host {

namespace {

// ---- Tables ----

// Columns are as wide as the first points need them, so that memory doesn't depend on the number of points.
class SweepTable {
public:
    SweepTable(const Sweep& sweep, const std::vector<SweepColumn>& columns, const Paint& paint,
               const std::function<void(std::string_view)>& print)
        : m_sweep(&sweep), m_columns(&columns), m_paint(&paint), m_print(&print)
    {
    }

    void take(std::span<const SweepPoint> points)
    {
        constexpr std::size_t enough = 1000; // points that tell how wide columns are
        for (const SweepPoint& point : points) {
            if (!m_table)
                m_table.emplace(header(point));
            m_table->row(row(point));
            m_warnings.add(point.warnings);
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
        for (const WarningCounts::Row& row : m_warnings.rows())
            (*m_print)(m_paint->warning("- " + warningLine(row, m_points)) + "\n");
        if (m_warnings.others() > 0)
            (*m_print)(m_paint->warning(fmt::format("- and {} more", m_warnings.others())) + "\n");
    }

private:
    std::vector<std::string> header(const SweepPoint& first)
    {
        std::vector<std::string> names;
        for (const Variation& variation : m_sweep->variations())
            names.push_back(shown(sweepName(variation)));
        if (!m_columns->empty()) {
            for (const SweepColumn& column : *m_columns)
                names.push_back(shown(column.name));
            return names;
        }
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
        if (!m_columns->empty()) {
            for (std::size_t i = 0; i < point.columns.size(); ++i)
                cells.push_back(amountText(point.columns[i], (*m_columns)[i].unit));
            return cells;
        }
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
    const std::vector<SweepColumn>* m_columns;
    const Paint* m_paint;
    const std::function<void(std::string_view)>* m_print;
    std::optional<TextTable> m_table;
    std::size_t m_points = 0;
    WarningCounts m_warnings;
};

// ---- JSON and CSV ----

void addUsual(Json& entry, const SweepPoint& point)
{
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
}

// One entry of the list, on lines of its own.
std::string jsonEntry(const Sweep& sweep, const std::vector<SweepColumn>& columns, const SweepPoint& point)
{
    Json entry{{"settings", Json::object()}};
    for (std::size_t i = 0; i < point.values.size(); ++i)
        entry["settings"][sweepName(sweep.variations()[i])] = point.values[i];
    if (columns.empty()) {
        addUsual(entry, point);
    } else {
        entry["quantities"] = Json::object();
        for (std::size_t i = 0; i < columns.size(); ++i)
            addAmount(entry["quantities"], columns[i].name, point.columns[i]);
    }
    entry["warnings"] = point.warnings;
    const std::string list = jsonText(Json::array({std::move(entry)})); // "[\n", the entry, "\n]\n"
    return ",\n" + list.substr(2, list.size() - 5);
}

// ---- Crossings ----

Json crossingJson(const Sweep& sweep, const SweepCrossing& crossing)
{
    const Variation& variation = sweep.variations()[crossing.variation];
    Json json{{"path", variation.path}, {"unit", variation.unit}};
    json["value"] = crossing.value ? Json(*crossing.value) : Json(nullptr);
    if (!crossing.value)
        json["valueReason"] = "thermal runaway";
    json["from"] = crossing.from;
    json["to"] = crossing.to;
    json["settings"] = Json::object();
    for (std::size_t i = 0; i < crossing.values.size(); ++i) {
        if (i != crossing.variation)
            json["settings"][sweepName(sweep.variations()[i])] = crossing.values[i];
    }
    json.update({{"budget", crossing.budget},
                 {"process", crossing.process},
                 {"limit", crossing.limit},
                 {"limitUnit", crossing.unit},
                 {"kept", crossing.keptBelow ? "below" : "above"}});
    return json;
}

std::string crossingsJson(const Sweep& sweep, const SweepCrossings& crossings)
{
    Json json{{"crossings", Json::array()}};
    for (const SweepCrossing& crossing : crossings.found())
        json["crossings"].push_back(crossingJson(sweep, crossing));
    if (crossings.more() > 0)
        json["crossingsLeftOut"] = crossings.more();
    return jsonText(json).substr(2); // behind "{\n"
}

std::string crossingsText(const Sweep& sweep, const SweepCrossings& crossings)
{
    constexpr std::size_t few = 40;
    const std::size_t listed = std::min(few, crossings.found().size());
    std::string text;
    if (listed > 0) {
        const bool hasOthers = sweep.variations().size() > 1;
        std::vector<std::string> header{"Budget", "Limit", "Kept", "Crossed at"};
        if (hasOthers)
            header.emplace_back("While");
        TextTable table(header);
        for (std::size_t i = 0; i < listed; ++i) {
            const SweepCrossing& crossing = crossings.found()[i];
            const std::string at = crossing.process.empty() ? "" : " @" + crossing.process;
            std::vector<std::string> row{shown(crossing.budget + at), amountText(crossing.limit, crossing.unit),
                                         crossing.keptBelow ? "below" : "above", shown(crossingPlace(sweep, crossing))};
            if (hasOthers)
                row.push_back(shown(sweepOthers(sweep, crossing)));
            table.row(std::move(row));
        }
        text = "\nBudgets are crossed, on straight lines between the points:\n" + table.text();
    }
    if (const std::size_t more = crossings.found().size() - listed + crossings.more(); more > 0)
        text += fmt::format("and at {} more places\n", more);
    for (const std::size_t variation : crossings.tooFar())
        text += fmt::format("not looked for along {}: vary it last\n", shown(sweep.variations()[variation].path));
    return text;
}

// ---- Points for programs ----

PointColumn settingColumn(const Variation& variation)
{
    PointColumn column{variation.path, variation.unit, PointColumn::Type::whole, 0, true};
    const auto isWhole = [](const Json& value) { return value.is_number_integer(); };
    const auto isNumber = [](const Json& value) { return value.is_number(); };
    const std::vector<Json>& listed = variation.listed;
    if (listed.empty()) {
        constexpr double wholeUpTo = 1e12;
        const double to = variation.from + static_cast<double>(variation.count) * variation.step;
        const bool whole = variation.from == std::floor(variation.from) &&
                           variation.step == std::floor(variation.step) &&
                           std::max(std::fabs(variation.from), std::fabs(to)) < wholeUpTo;
        column.type = whole ? PointColumn::Type::whole : PointColumn::Type::real;
    } else if (!std::all_of(listed.begin(), listed.end(), isNumber)) {
        column.type = PointColumn::Type::text;
        for (const Json& value : listed)
            column.width = std::max(column.width, validUtf8(sweepWord(value)).size());
    } else if (!std::all_of(listed.begin(), listed.end(), isWhole)) {
        column.type = PointColumn::Type::real;
    }
    return column;
}

PointRow rowOf(const PointColumns& columns, const SweepPoint& point)
{
    PointRow row;
    row.reserve(columns.size());
    for (std::size_t i = 0; i < point.values.size(); ++i) {
        const Json& value = point.values[i];
        switch (columns[i].type) {
        case PointColumn::Type::real:
            row.emplace_back(value.get<double>());
            break;
        case PointColumn::Type::whole:
            row.emplace_back(value.get<std::int64_t>());
            break;
        case PointColumn::Type::text:
            row.emplace_back(sweepWord(value));
            break;
        }
    }
    for (const double value : point.columns)
        row.emplace_back(value);
    return row;
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

std::string sweepOthers(const Sweep& sweep, const SweepCrossing& crossing)
{
    std::vector<std::string> words;
    for (std::size_t i = 0; i < crossing.values.size(); ++i) {
        if (i != crossing.variation)
            words.push_back(
                fmt::format("{} = {}", sweepName(sweep.variations()[i]), abbreviated(sweepWord(crossing.values[i]))));
    }
    return fmt::format("{}", fmt::join(words, ", "));
}

std::string crossingPlace(const Sweep& sweep, const SweepCrossing& crossing)
{
    const std::string name = sweepName(sweep.variations()[crossing.variation]);
    if (crossing.value)
        return fmt::format("{} = {:.6g}", name, *crossing.value);
    return fmt::format("{} from {:g} to {:g}: runaway", name, crossing.from, crossing.to);
}

PointColumns sweepPointColumns(const Sweep& sweep, const SweepRun& options)
{
    PointColumns columns;
    for (const Variation& variation : sweep.variations())
        columns.push_back(settingColumn(variation));
    for (const SweepColumn& column : options.columns)
        columns.push_back({column.name, column.unit, PointColumn::Type::real, 0, false});
    return columns;
}

SweepEnd streamSweep(const Sweep& sweep, const SweepRun& options, const PointStudy& study, PointOutput* output)
{
    const bool isUsual = options.columns.empty(); // rows by process side
    const std::string head = isUsual ? csvHeader(sweep) : pointHead(study.form, study.columns);
    const auto render = [&](const SweepPoint& point) {
        if (isUsual)
            return csvRows(point);
        std::string text;
        addPoint(text, study.form, study.columns, rowOf(study.columns, point));
        return text;
    };
    const std::size_t there = output ? output->chunks() : 0;
    SweepEnd end;
    end.points = std::min(there * sweep.chunkPoints(), sweep.points());
    end.warned = output ? output->warned() : 0;
    sweep.stream(options, there, render, [&](const SweepText& chunk) {
        end.points += chunk.points;
        end.warned += chunk.warned;
        output->append(chunk.chunk == 0 ? head + chunk.text : chunk.text, chunk.warned);
    });
    if (output)
        output->finish(end.points == sweep.points());
    return end;
}

std::size_t printSweep(const Sweep& sweep, const SweepRun& options, SweepFormat format, const Paint& paint,
                       const std::function<void(std::string_view)>& print,
                       const std::function<void(std::span<const SweepPoint>)>& also)
{
    if (format == SweepFormat::csv) {
        const PointStudy study{PointForm::csv, sweepPointColumns(sweep, options), sweep.points(), nullptr};
        return streamSweep(sweep, options, study, printedPoints(print).get()).warned;
    }
    SweepRun withBudgets = options;
    withBudgets.budgets = true;
    SweepCrossings crossings(sweep);
    std::size_t warned = 0;
    const auto run = [&](const Sweep::Render& render, const auto& take) {
        sweep.run(withBudgets, render, [&](std::span<const SweepPoint> points, const std::string& text) {
            warned += static_cast<std::size_t>(std::count_if(
                points.begin(), points.end(), [](const SweepPoint& point) { return !point.warnings.empty(); }));
            crossings.take(points);
            if (also)
                also(points);
            take(points, text);
        });
    };
    if (format == SweepFormat::json) {
        bool first = true;
        run([&](const SweepPoint& point) { return jsonEntry(sweep, options.columns, point); },
            [&](std::span<const SweepPoint>, const std::string& text) {
                print(first ? fmt::format("{{\n  \"format\": {},\n  \"points\": [{}", kJsonFormat, text.substr(1))
                            : text);
                first = false;
            });
        // Cut short it is no list, but whole lines.
        print(Interrupt::signal() == 0 ? "\n],\n" + crossingsJson(sweep, crossings) : "\n");
        return warned;
    }
    SweepTable table(sweep, options.columns, paint, print);
    run([](const SweepPoint&) { return std::string(); },
        [&](std::span<const SweepPoint> points, const std::string&) { table.take(points); });
    table.end();
    print(crossingsText(sweep, crossings));
    return warned;
}

} // namespace zelm::host
