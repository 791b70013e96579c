#include "host/blocks/Uncertainty.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/blocks/DataLines.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

Uncertainty readUncertainty(const std::string& kind, const std::string& rail, const Json& entry,
                            const JsonSource& source, const std::string& path)
{
    if (!entry.is_object() || !entry.contains("relative") || !entry["relative"].is_number() ||
        !entry.contains("reason") || !entry["reason"].is_string())
        throw DataError(fmt::format("{}: expected {{\"relative\": number, \"reason\": text}}", source.at(path)));
    return {kind, rail, entry["relative"].get<double>(), entry["reason"].get<std::string>()};
}

std::vector<Uncertainty> readBlock(const Json& block, const JsonSource& source, const std::string& path)
{
    if (!block.is_object())
        throw DataError(fmt::format("{}: expected an object {{...}}", source.at(path)));
    std::vector<Uncertainty> all;
    for (const char* kind : {"dynamic", "static", "process", "temperature"}) {
        if (block.contains(kind))
            all.push_back(readUncertainty(kind, "", block[kind], source, path + "." + kind));
    }
    if (block.contains("rails")) {
        for (const auto& [rail, entry] : block["rails"].items())
            all.push_back(readUncertainty("", rail, entry, source, fmt::format("{}.rails.{}", path, rail)));
    }
    return all;
}

} // namespace

std::map<std::string, std::vector<Uncertainty>, std::less<>> uncertainties()
{
    std::map<std::string, std::vector<Uncertainty>, std::less<>> byBlock;
    const std::string file = dataPath("uncertainty.json");
    if (file.empty())
        return byBlock;
    JsonSource source;
    const Json root = readJson(file, source);
    if (!root.is_object() || !root.contains("blocks") || !root["blocks"].is_object())
        throw DataError(fmt::format("{}: expected {{\"blocks\": {{...}}}}", file));
    for (const auto& [name, block] : root["blocks"].items())
        byBlock[name] = readBlock(block, source, "blocks." + name);
    return byBlock;
}

std::string uncertaintyWords(const Uncertainty& uncertainty)
{
    return fmt::format("{} {:g} %: {}", uncertainty.rail.empty() ? uncertainty.kind : "on " + uncertainty.rail,
                       100.0 * uncertainty.relative, uncertainty.reason);
}

} // namespace zelm::host
