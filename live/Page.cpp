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
#include "host/report/Report.h"

#include <emscripten/emscripten.h>

#include <algorithm>
#include <cmath>
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
    Json answer(const Json& request)
    {
        const std::string wish = request.at("do");
        if (wish == "catalogue")
            return {{"catalogue", catalogueJson()}};
        const std::string text = request.at("text");
        if (wish == "format")
            return {{"text", formattedDesign(text, request.at("file"))}};
        if (wish == "read") { // without what only people read in it
            JsonSource source{request.at("file"), nullptr};
            return {{"design", parseJson(text, source)}};
        }
        Json result = estimate(request.at("file"), text);
        if (request.contains("print")) // as the tool prints it
            return {{"json", jsonText(result)}};
        return {{"estimate", std::move(result)}};
    }

private:
    // Of what differs from the design before, only that is computed.
    Json estimate(const std::string& file, const std::string& text)
    {
        Design design = parseDesign(file, text);
        if (m_running)
            m_running->change(std::move(design));
        else
            m_running.emplace(std::move(design), Curves::drawn);
        return jsonReport(m_running->estimate());
    }

    std::optional<RunningDesign> m_running;
};

std::string answerTo(const char* request)
{
    static Page page;
    try {
        return compactJson(page.answer(Json::parse(request)));
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
    static const bool ready = setenv("QTA_DATADIR", "/data", 1) == 0;
    static_cast<void>(ready);
    answer = zelm::host::answerTo(request);
    return answer.c_str();
}
