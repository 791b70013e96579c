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

/// Cells are HTML. A heading that begins with '<' is left-aligned, without that sign.
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
