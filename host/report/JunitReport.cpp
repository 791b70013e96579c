#include "host/base/Text.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace zelm::host {

namespace {

// For attributes. XML 1.0 can't hold most control characters and two others, not even escaped.
std::string escapedXml(const std::string& text)
{
    std::string escaped;
    for (const char c : validUtf8(text)) {
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
        case '\t':
        case '\n':
        case '\r':
            escaped += fmt::format("&#{};", static_cast<int>(c)); // plain ones would be read as spaces
            break;
        default:
            escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    for (const std::string_view other : {"\xef\xbf\xbe", "\xef\xbf\xbf"}) { // U+FFFE and U+FFFF
        for (std::size_t at = escaped.find(other); at != std::string::npos; at = escaped.find(other, at))
            escaped.replace(at, other.size(), "\xef\xbf\xbd");
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
