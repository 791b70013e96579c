// What the live page asks of the models: a request goes in as JSON, an answer comes out. docs/live.md tells them.

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/blocks/Catalogue.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Rails.h"
#include "host/blocks/Uses.h"
#include "host/design/Design.h"
#include "host/design/Format.h"
#include "host/design/Include.h"
#include "host/estimate/RunningDesign.h"
#include "host/report/ExplainReport.h"
#include "host/report/Report.h"
#include "host/study/Explain.h"

#include <emscripten/emscripten.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

namespace {

Json inputJson(const Block& block, const ZelmCellInfo& cell)
{
    Json json{{"cell", cell.name},        {"type", typeWord(cell.type)},
              {"unit", cell.unit},        {"default", constantDefault(cell)},
              {"legal", legalText(cell)}, {"meaning", cell.meaning}};
    if (std::vector<std::string> words = legalWords(block, cell); !words.empty())
        json["words"] = std::move(words);
    if (std::vector<int> numbers = legalNumbers(cell); !numbers.empty())
        json["numbers"] = std::move(numbers);
    if (cell.legal.kind == zelm::Legal::Kind::number && std::isfinite(cell.legal.lowest))
        json["lowest"] = cell.legal.lowest;
    if (cell.legal.kind == zelm::Legal::Kind::number && std::isfinite(cell.legal.highest))
        json["highest"] = cell.legal.highest;
    return json;
}

// All inputs that a group of the kind may have.
Json inputsJson(const Block& block)
{
    Json inputs = Json::array();
    std::vector<std::string_view> known;
    for (const Block* reached : inputBlocks(block)) {
        for (const ZelmCellInfo& cell : reached->cells) {
            if (cell.kind != ZelmCellInfo::Kind::userInput ||
                std::find(known.begin(), known.end(), cell.name) != known.end())
                continue;
            known.push_back(cell.name);
            inputs.push_back(inputJson(*reached, cell));
        }
    }
    return inputs;
}

// Kinds of groups with their inputs, the fields of a device with their words, parts and rails.
Json catalogueJson()
{
    Json kinds = Json::array();
    for (const Block& block : blocks()) {
        if (block.name != "Static" && block.name != "Parts")
            kinds.push_back({{"block", block.name},
                             {"title", block.title},
                             {"subsystem", block.subsystem},
                             {"takesClock", takesClock(block.name)},
                             {"inputs", inputsJson(block)}});
    }
    Json device = Json::object();
    for (const auto& [cell, place] : ownFields()) {
        constexpr std::string_view prefix = "device.";
        if (place.starts_with(prefix))
            device[std::string(place.substr(prefix.size()))] = inputJson(block("Static"), block("Static").cell(cell));
    }
    return {{"kinds", std::move(kinds)},
            {"device", std::move(device)},
            {"parts", orderableParts()},
            {"rails", railNames()}};
}

class Page {
public:
    std::string answer(const Json& request)
    {
        const std::string wish = request.at("do");
        if (wish == "catalogue")
            return compactJson({{"catalogue", catalogueJson()}});
        const std::string file = request.at("file");
        const std::string text = request.at("text");
        const bool prints = request.contains("print"); // as the tool does
        if (wish == "format")
            return compactJson({{"text", formattedDesign(text, file)}});
        if (wish == "read") { // without what only people read in it
            JsonSource source{file, nullptr};
            return compactJson({{"design", parseJson(text, source)}});
        }
        const Estimate& estimate = estimateOf(file, text);
        if (wish == "explain") {
            const std::string json = explained(estimate, request);
            return prints ? compactJson({{"json", json}}) : fmt::format(R"({{"explanation":{}}})", json);
        }
        if (prints)
            return compactJson({{"json", jsonText(jsonReport(estimate))}});
        return fmt::format(R"({{"estimate":{}}})", m_report.write(estimate));
    }

private:
    // Of what differs from the design before, only that is computed.
    const Estimate& estimateOf(const std::string& file, const std::string& text)
    {
        if (!m_text.empty() && text == m_text && file == m_file)
            return m_running->estimate();
        m_explanation.reset();
        Design design = parseDesign(file, text);
        m_text.clear(); // until the estimate stands
        if (m_running)
            m_running->change(std::move(design));
        else
            m_running.emplace(std::move(design), Curves::drawn);
        const Estimate& estimate = m_running->estimate();
        m_file = file;
        m_text = text;
        return estimate;
    }

    // A quantity, or what lies on a path of operands below it.
    std::string explained(const Estimate& estimate, const Json& request)
    {
        if (!m_explanation)
            m_explanation.emplace(estimate);
        std::size_t id = m_explanation->idOf(namedQuantity(request.at("quantity"), estimate));
        for (const std::size_t operand : request.value("path", std::vector<std::size_t>()))
            id = m_explanation->node(id).operands.at(operand);
        return explanationJson(*m_explanation, id, request.value("depth", kWholeDepth), estimate.design.name);
    }

    std::optional<RunningDesign> m_running;
    std::string m_file;
    std::string m_text; // of the estimate; empty if there is none
    std::optional<Explanation> m_explanation;
    RunningJsonReport m_report;
};

std::string answerTo(const char* request)
{
    static Page page;
    try {
        return page.answer(Json::parse(request));
    } catch (const std::exception& error) {
        return compactJson({{"error", error.what()}});
    }
}

} // namespace

} // namespace zelm::host

/// The answer stays until the next call.
extern "C" EMSCRIPTEN_KEEPALIVE const char* zelm_call(const char* request)
{
    static std::string answer;
    static const bool ready = setenv("QTA_DATADIR", "data", 1) == 0; // explanations name its files
    static_cast<void>(ready);
    answer = zelm::host::answerTo(request);
    return answer.c_str();
}
