#include "host/report/HtmlSection.h"

#include "host/report/HtmlPage.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iterator>

namespace zelm::host {

std::string htmlDetail(const std::string& html)
{
    return html.empty() ? "" : fmt::format("<div class=\"detail\">{}</div>\n", html);
}

std::string htmlCharts(const char* section)
{
    return fmt::format("<div id=\"{}-charts\"></div>\n", section);
}

std::string htmlAside(const std::string& html)
{
    return fmt::format("<p class=\"soft\">{}</p>\n", html);
}

std::string htmlFolded(const std::string& summary, const std::string& html)
{
    return fmt::format("<details><summary>{}</summary>{}</details>\n", summary, html);
}

std::string htmlExactly(double value, const std::string& text)
{
    return fmt::format("<data value=\"{}\">{}</data>", value, text);
}

std::string htmlCode(std::string_view text)
{
    return fmt::format("<code>{}</code>", htmlText(text));
}

std::string htmlRowName(const std::string& name, bool isRepeated)
{
    return isRepeated ? fmt::format("<span class=\"unseen\">{}</span>", htmlText(name)) : htmlText(name);
}

std::string htmlUncertainty(const std::map<std::string, std::vector<Uncertainty>, std::less<>>& known,
                            std::string_view block)
{
    const auto of = known.find(block);
    if (of == known.end())
        return {};
    HtmlCells words;
    for (const Uncertainty& uncertainty : of->second)
        words.push_back(htmlText(uncertaintyWords(uncertainty)));
    return htmlAside(fmt::format("Uncertainty, one standard deviation: {}.", fmt::join(words, "; ")));
}

void appendCells(HtmlCells& cells, HtmlCells more)
{
    cells.insert(cells.end(), std::move_iterator(more.begin()), std::move_iterator(more.end()));
}

bool keptElsewhere(const BudgetResult& budget)
{
    return !budget.otherActual || *budget.otherActual <= budget.limit;
}

HtmlSection::HtmlSection(const Estimate& estimate, const PageExplanations& told)
    : m_estimate(&estimate), m_side(&estimate.side()),
      m_other(estimate.sides.size() > 1 ? &estimate.sides[1] : nullptr), m_told(&told)
{
}

std::string HtmlSection::why(const std::string& name, const std::string& text) const
{
    const auto place = m_told->places.find(name);
    if (text.empty() || place == m_told->places.end())
        return text;
    return fmt::format("<span data-why=\"{}\">{}</span>", place->second, text);
}

std::string HtmlSection::whyOf(const std::string& name, const Side& side, const std::string& text) const
{
    return why(side.process.empty() ? name : name + "@" + side.process, text);
}

std::string HtmlSection::verdictOf(const BudgetResult& budget) const
{
    if (budget.broken()) {
        std::string words = budget.verdict();
        constexpr std::string_view loud = "BROKEN";
        if (const std::size_t at = words.find(loud); at != std::string::npos)
            words.replace(at, loud.size(), "broken");
        return fmt::format("<b class=\"bad\">✗ {}</b>", htmlText(words));
    }
    if (!keptElsewhere(budget))
        return fmt::format("<b class=\"mark\">! kept, broken at {}</b>", htmlText(m_other->process));
    return "<b class=\"good\">✓ kept</b>";
}

} // namespace zelm::host
