#include "host/base/Json.h"
#include "host/report/ExplainReport.h"
#include "host/report/HtmlPage.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <string_view>

// The page and its charts, taken into the program as they stand.
asm(R"(
    .section .rodata
zelm_report_page: .incbin ")" ZELM_REPORT_DIR R"(/report.html"
zelm_report_page_end: .byte 0
zelm_report_charts: .incbin ")" ZELM_REPORT_DIR R"(/vendor/echarts.js"
zelm_report_charts_end: .byte 0
    .text
)");
extern const char zelm_report_page[];
extern const char zelm_report_page_end[];
extern const char zelm_report_charts[];
extern const char zelm_report_charts_end[];

namespace zelm::host {

std::string htmlReport(const Estimate& estimate)
{
    std::string page(zelm_report_page, zelm_report_page_end);
    const auto fill = [&page](std::string_view mark, std::string_view text) {
        page.replace(page.find(mark), mark.size(), text);
    };
    fill("/*ECHARTS*/", {zelm_report_charts, static_cast<std::size_t>(zelm_report_charts_end - zelm_report_charts)});
    // From the last mark to the first: a group may have the name of one.
    fill("/*EXPLANATIONS*/", forScript(explanationsForPage(estimate)));
    fill("/*ESTIMATE*/", forScript(compactJson(jsonReport(estimate))));
    return page;
}

// With the head of the estimate's report, which holds the style.
std::string htmlPage(const std::string& title, const std::string& lead, const std::string& body)
{
    const std::string_view report(zelm_report_page, static_cast<std::size_t>(zelm_report_page_end - zelm_report_page));
    constexpr std::string_view itsTitle = "<title>Power estimate</title>";
    std::string head(report.substr(0, report.find("</head>")));
    head.replace(head.find(itsTitle), itsTitle.size(), fmt::format("<title>{}</title>", htmlText(title)));
    return fmt::format("{}</head>\n<body>\n<header><h1>{}</h1><p class=\"soft\">{}</p></header>\n<main>\n{}</main>\n"
                       "<footer>Made by zelm {}.</footer>\n</body>\n</html>\n",
                       head, htmlText(title), lead, body, ZELM_VERSION);
}

} // namespace zelm::host
