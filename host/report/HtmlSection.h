#pragma once

#include "host/blocks/Uncertainty.h"
#include "host/estimate/Results.h"
#include "host/report/ExplainReport.h"

#include <functional>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

// Pieces of the HTML report's sections.

using HtmlCells = std::vector<std::string>;

inline constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
inline constexpr int kLimitDecimals = 3; ///< of limits and what is held against them

/// What the printed summary leaves out unless all is asked for.
std::string htmlDetail(const std::string& html);
/// Where a script draws a section's charts, if one runs.
std::string htmlCharts(const char* section);
std::string htmlAside(const std::string& html);
std::string htmlFolded(const std::string& summary, const std::string& html);
/// What a column is sorted by where its text is rounded.
std::string htmlExactly(double value, const std::string& text);
std::string htmlCode(std::string_view text);
/// A row's name; if it stands above, only who hears the table has it again.
std::string htmlRowName(const std::string& name, bool isRepeated);
/// What is known of a block's uncertainties, in a sentence.
std::string htmlUncertainty(const std::map<std::string, std::vector<Uncertainty>, std::less<>>& known,
                            std::string_view block);

void appendCells(HtmlCells& cells, HtmlCells more);

/// Whether a budget is kept on the other process side too.
bool keptElsewhere(const BudgetResult& budget);

/// What all sections are written from.
class HtmlSection {
public:
    HtmlSection(const Estimate& estimate, const PageExplanations& told);

protected:
    /// A number that says how it comes about, where the page knows.
    std::string why(const std::string& name, const std::string& text) const;
    /// The same of a quantity that differs by process side.
    std::string whyOf(const std::string& name, const Side& side, const std::string& text) const;
    std::string verdictOf(const BudgetResult& budget) const;

    const Estimate* m_estimate;
    const Side* m_side;
    const Side* m_other; ///< null if there is one side only

private:
    const PageExplanations* m_told;
};

/// The sections of supplies and of modes, and that of the start-up, which is empty unless it was asked for.
std::string htmlSupplies(const Estimate& estimate, const PageExplanations& told);
std::string htmlModes(const Estimate& estimate, const PageExplanations& told);
std::string htmlStartUp(const Estimate& estimate);
/// All groups in a table, their hierarchy, and each one's outputs and inputs.
std::string htmlGroups(const Estimate& estimate, const PageExplanations& told);

} // namespace zelm::host
