#include "host/report/Report.h"

#include <fmt/format.h>

#include <algorithm>

namespace zelm::host {

namespace {

std::string escapedXml(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            // XML 1.0 can't hold the other control characters, not even escaped.
            escaped += static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' ? ' ' : c;
        }
    }
    return escaped;
}

} // namespace

std::string junitReport(const Estimate& estimate)
{
    const auto broken = std::count_if(estimate.budgets.begin(), estimate.budgets.end(),
                                      [](const BudgetResult& budget) { return budget.broken(); });
    std::string text = fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<testsuite name=\"{}\" tests=\"{}\" failures=\"{}\">\n",
                                   escapedXml(estimate.design.name), estimate.budgets.size(), broken);
    for (const BudgetResult& budget : estimate.budgets) {
        text += fmt::format("  <testcase classname=\"budgets\" name=\"{}\"", escapedXml(budget.name));
        if (budget.broken())
            text += fmt::format(">\n    <failure message=\"{}\"/>\n  </testcase>\n", escapedXml(budget.words()));
        else
            text += "/>\n";
    }
    return text + "</testsuite>\n";
}

} // namespace zelm::host
