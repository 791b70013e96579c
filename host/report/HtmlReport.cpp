#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/report/ExplainReport.h"
#include "host/report/HtmlEstimate.h"
#include "host/report/HtmlPage.h"
#include "host/report/Report.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <openssl/evp.h>
#include <zlib.h>

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

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

namespace {

constexpr std::string_view kPageTitle = "<title>Power estimate</title>";

// Of the estimate what charts show; tables stand in the page.
std::string chartData(const Estimate& estimate)
{
    Json json = jsonReport(estimate);
    for (const char* told :
         {"carried", "dataFiles", "hierarchy", "remarks", "staticUncertainty", "utilisation", "warnings"})
        json.erase(told);
    for (Json& group : json["groups"]) {
        for (const char* told : {"inputs", "outputs", "uncertainty"})
            group.erase(told);
    }
    return compactJson(json);
}

// A zlib stream as base64: explanations are many times as long as all else, and unpacked when somebody asks.
std::string packed(std::string_view text)
{
    const std::vector<unsigned char> plain(text.begin(), text.end());
    uLongf size = compressBound(static_cast<uLong>(plain.size()));
    std::vector<unsigned char> bytes(size);
    if (compress(bytes.data(), &size, plain.data(), static_cast<uLong>(plain.size())) != Z_OK)
        throw Error("explanations don't fit into a page");
    std::vector<unsigned char> letters(4 * ((size + 2) / 3) + 1); // with a null at the end
    const int length = EVP_EncodeBlock(letters.data(), bytes.data(), static_cast<int>(size));
    return {letters.begin(), letters.begin() + length};
}

std::string today()
{
    const char* given = std::getenv("SOURCE_DATE_EPOCH");
    long long seconds = 0;
    const std::string_view text(given ? given : "");
    const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (text.empty() || failed != std::errc() || end != text.data() + text.size())
        seconds = static_cast<long long>(std::time(nullptr));
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    return gmtime_r(&time, &parts) ? fmt::format("{:%Y-%m-%d}", parts) : std::string();
}

} // namespace

Provenance provenanceOf(const Design& design, const std::string& file, const std::string& text)
{
    const std::filesystem::path path(file);
    Provenance provenance{
        file == kStandardInput ? "standard input" : path.filename().string(), sha256Of(text), {}, today()};
    for (const std::string& included : design.source.includedFiles())
        provenance.included.push_back({std::filesystem::path(included).lexically_proximate(path.parent_path()).string(),
                                       sha256Of(readFile(included))});
    return provenance;
}

std::string htmlReport(const Estimate& estimate, const Provenance& provenance)
{
    const PageExplanations told = explanationsForPage(estimate);
    const EstimateHtml parts = estimateHtml(estimate, provenance, told);
    std::string page(zelm_report_page, zelm_report_page_end);
    const auto fill = [&page](std::string_view mark, std::string_view text) {
        page.replace(page.find(mark), mark.size(), text);
    };
    // From the last mark to the first: a group may have the name of one.
    fill("/*ECHARTS*/", {zelm_report_charts, static_cast<std::size_t>(zelm_report_charts_end - zelm_report_charts)});
    fill("/*EXPLANATIONS*/", packed(told.json));
    fill("/*ESTIMATE*/", forScript(chartData(estimate)));
    fill("/*FOOT*/", parts.foot);
    fill("/*BODY*/", parts.body);
    fill("/*LINKS*/", parts.links);
    fill("/*LEAD*/", parts.lead);
    fill("/*NAME*/", htmlText(estimate.design.name));
    fill(kPageTitle, fmt::format("<title>{}: power estimate</title>", htmlText(estimate.design.name)));
    return page;
}

// With the head of the estimate's report, which holds the style.
std::string htmlPage(const std::string& title, const std::string& lead, const std::string& body)
{
    const std::string_view report(zelm_report_page, static_cast<std::size_t>(zelm_report_page_end - zelm_report_page));
    std::string head(report.substr(0, report.find("</head>")));
    head.replace(head.find(kPageTitle), kPageTitle.size(), fmt::format("<title>{}</title>", htmlText(title)));
    return fmt::format("{}</head>\n<body>\n<header><h1>{}</h1><p class=\"soft\">{}</p></header>\n<main>\n{}</main>\n"
                       "<footer>Made by zelm {}.</footer>\n</body>\n</html>\n",
                       head, htmlText(title), lead, body, ZELM_VERSION);
}

} // namespace zelm::host
