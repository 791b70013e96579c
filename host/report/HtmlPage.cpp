#include "host/report/HtmlPage.h"

#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace zelm::host {

std::string htmlText(std::string_view text)
{
    std::string safe;
    for (const char c : validUtf8(text)) {
        if (c == '<')
            safe += "&lt;";
        else if (c == '>')
            safe += "&gt;";
        else if (c == '&')
            safe += "&amp;";
        else if (c == '"')
            safe += "&quot;";
        else
            safe += c;
    }
    return safe;
}

std::string forScript(std::string_view json)
{
    std::string safe;
    safe.reserve(json.size());
    for (const char c : json) {
        if (c == '<')
            safe += "\\u003c";
        else
            safe += c;
    }
    return safe;
}

std::string htmlSection(const std::string& heading, const std::string& body)
{
    return fmt::format("<section><h2>{}</h2>\n{}</section>\n", htmlText(heading), body);
}

std::string HtmlTable::html() const
{
    const auto kindOf = [&](std::size_t column) {
        const std::string_view word = columns[column].kind;
        return word.empty() ? std::string() : fmt::format(" class=\"{}\"", word);
    };
    const auto rowText = [&](const HtmlRow& row) {
        std::string text = fmt::format("<tr{}>", row.attributes);
        for (std::size_t i = 0; i < row.cells.size(); ++i)
            text += i == 0 ? fmt::format("<th{} scope=\"row\">{}</th>", kindOf(i), row.cells[i])
                           : fmt::format("<td{}>{}</td>", kindOf(i), row.cells[i]);
        return text + "</tr>\n";
    };
    std::string text = fmt::format("<div class=\"scroll\"><table{}><caption>{}</caption><thead><tr>",
                                   kind.empty() ? "" : fmt::format(" class=\"{}\"", kind), htmlText(caption));
    for (std::size_t i = 0; i < columns.size(); ++i)
        text += columns[i].heading.empty()
                    ? fmt::format("<td{}></td>", kindOf(i))
                    : fmt::format("<th{} scope=\"col\">{}</th>", kindOf(i), htmlText(columns[i].heading));
    text += "</tr></thead><tbody>\n";
    for (const HtmlRow& row : rows)
        text += rowText(row);
    text += "</tbody>";
    if (!foot.cells.empty())
        text += fmt::format("<tfoot>{}</tfoot>", rowText(foot));
    return text + "</table></div>\n";
}

std::string htmlTable(const std::string& caption, const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows)
{
    HtmlTable table{caption, {}};
    for (const std::string& heading : headings)
        table.columns.push_back(heading.starts_with('<') ? HtmlColumn{heading.substr(1), "t"} : HtmlColumn{heading});
    for (const std::vector<std::string>& row : rows)
        table.rows.push_back({row});
    return table.html();
}

std::string htmlBars(const std::vector<HtmlBar>& bars, double least, double most, const std::string& title)
{
    constexpr double width = 260.0;
    constexpr double thinnest = 1.0;
    const double scale = most > least ? width / (most - least) : 0.0;
    const auto place = [&](double amount) { return (std::clamp(amount, least, most) - least) * scale; };
    std::string text = fmt::format(
        "<svg width=\"{0}\" height=\"16\" viewBox=\"0 0 {0} 16\" style=\"vertical-align:middle\" role=\"img\" "
        "aria-label=\"{1}\"><title>{1}</title>",
        width, htmlText(title));
    for (const HtmlBar& bar : bars) {
        const auto [low, high] = std::minmax(bar.from, bar.to);
        if (low != high)
            text += fmt::format("<rect x=\"{:.1f}\" y=\"2\" width=\"{:.1f}\" height=\"12\" style=\"fill:var(--{})\"/>",
                                place(low), std::max(place(high) - place(low), thinnest), bar.color);
    }
    return text + fmt::format("<line x1=\"{0:.1f}\" y1=\"0\" x2=\"{0:.1f}\" y2=\"16\" "
                              "style=\"stroke:var(--soft)\"/></svg>",
                              place(0.0));
}

} // namespace zelm::host
