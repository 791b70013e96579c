#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/Terminal.h"
#include "host/blocks/DataFiles.h"
#include "host/blocks/Uncertainty.h"
#include "host/estimate/Results.h"

#include <fmt/format.h>

#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zelm::host {

/// A number in CSV; nothing for NaN, which a runaway leaves.
inline std::string csvNumber(double value)
{
    return std::isnan(value) ? std::string() : fmt::format("{}", value);
}

/// A number as JSON; NaN, which a runaway leaves, is null with that reason beside it.
void addAmount(Json& object, const std::string& name, double value);

/// The estimate as tables for a terminal; verbose adds the inputs and what was carried where.
std::string textReport(const Estimate& estimate, bool verbose, const Paint& paint = Paint());
/// The estimate as JSON, all of it.
Json jsonReport(const Estimate& estimate);

/// The same on one line, of a design at work, again and again: groups that haven't changed aren't written anew. The
/// data stay what they are.
class RunningJsonReport {
public:
    RunningJsonReport();

    std::string write(const Estimate& estimate);

private:
    struct Written {
        GroupResult group{};
        std::string json{};
    };

    std::map<std::string, std::vector<Uncertainty>, std::less<>> m_uncertainties;
    std::vector<Written> m_groups; // by their places
};

/// One row per group and rail, then one per rail and process; supplies and modes are tables of their own below an empty
/// line.
std::string csvReport(const Estimate& estimate);
/// The tables that a spreadsheet may want on their own: groups, rails, totals.
std::vector<std::string> csvTables();
/// One of them; an Error names them.
std::string csvTable(const Estimate& estimate, const std::string& table);
/// The budgets as JUnit's XML, for a CI.
std::string junitReport(const Estimate& estimate);
/// What a page says of where it comes from; what is empty it passes over.
struct Provenance {
    std::string file{};   ///< of the design
    std::string sha256{}; ///< of that file, byte for byte
    std::vector<DataFile> included{};
    std::string date{}; ///< "2026-11-22"
};
/// Of a design that was read from that text; names without the folders around the design. The day is today, or that of
/// SOURCE_DATE_EPOCH, in UTC.
Provenance provenanceOf(const Design& design, const std::string& file, const std::string& text);
/// The estimate as one page that needs no network: tables, charts, every group's inputs.
std::string htmlReport(const Estimate& estimate, const Provenance& provenance);

} // namespace zelm::host
