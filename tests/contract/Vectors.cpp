#include "contract/Vectors.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>

namespace zelm::test {

namespace {

using Json = nlohmann::ordered_json; // cells are pulled in the order in which the vectors list them

CellValue valueOf(const Json& json, const std::string& type)
{
    if (type == "int")
        return json.get<int>();
    if (type == "float")
        return std::bit_cast<float>(static_cast<std::uint32_t>(std::stoul(json.get<std::string>(), nullptr, 16)));
    return json.get<std::string>();
}

VectorSet readSet(const std::filesystem::path& directory)
{
    std::ifstream file(directory / "cases.json");
    const Json content = Json::parse(file);
    VectorSet set{directory.string(), {}, {}};
    std::map<std::string, std::string> types;
    for (const Json& cell : content.at("cells")) {
        set.cells.push_back(cell.at(0));
        types[set.cells.back()] = cell.at(1);
    }
    for (const Json& json : content.at("cases")) {
        VectorCase one;
        one.where =
            directory.string() + " case " + std::to_string(set.cases.size()) + "\ninputs " + json.at("in").dump();
        for (const auto& [name, value] : json.at("in").items())
            one.in.emplace_back(name, valueOf(value, types.at(name)));
        for (std::size_t i = 0; i < json.at("out").size(); ++i)
            one.out.emplace_back(set.cells.at(i), valueOf(json.at("out")[i], types.at(set.cells[i])));
        for (const auto& [name, value] : json.at("pulled").items())
            one.pulled.emplace_back(name, valueOf(value, types.at(name)));
        set.cases.push_back(std::move(one));
    }
    return set;
}

} // namespace

std::vector<VectorSet> readVectors(const std::string& block)
{
    std::vector<VectorSet> sets;
    for (const auto& entry : std::filesystem::directory_iterator(ZELM_SOURCE_DIR "/tests/vectors/" + block))
        sets.push_back(readSet(entry.path()));
    std::sort(sets.begin(), sets.end(), [](const auto& a, const auto& b) { return a.directory < b.directory; });
    return sets;
}

} // namespace zelm::test
