#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

// Pages of tables and bars in the style of the HTML report, whole in one file and without scripts.

/// Text with what HTML has a meaning for written out.
std::string htmlText(std::string_view text);

/// A page with its title, a line of HTML below it, and sections of HTML.
std::string htmlPage(const std::string& title, const std::string& lead, const std::string& body);

/// JSON for a script element, which may not hold its end tag.
std::string forScript(std::string_view json);

std::string htmlSection(const std::string& heading, const std::string& body);

/// Cells are HTML, the first heads its row.
struct HtmlRow {
    std::vector<std::string> cells;
    std::string attributes{}; ///< of the row: " class=\"default\""
};

struct HtmlColumn {
    std::string heading;
    const char* kind = ""; ///< t: words; wide: a bar that small screens leave out; else numbers
};

struct HtmlTable {
    std::string caption;
    std::vector<HtmlColumn> columns;
    std::vector<HtmlRow> rows{};
    HtmlRow foot{};
    std::string kind{}; ///< sortable: by a click on a heading, where scripts run

    std::string html() const;
};

/// The same with plain rows. A heading that begins with '<' is left-aligned, without that sign.
std::string htmlTable(const std::string& caption, const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows);

/// A stretch of a bar chart's row, in a variable of the report's style: "static".
struct HtmlBar {
    double from = 0.0;
    double to = 0.0;
    const char* color = "static";
};

/// A row of a bar chart whose axis goes from least to most, with a line at zero.
std::string htmlBars(const std::vector<HtmlBar>& bars, double least, double most, const std::string& title);

} // namespace zelm::host
