#include "host/blocks/DataFiles.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zelm::host {

namespace {

// By the build: the data can't change any more.
constexpr std::pair<std::string_view, std::string_view> kHashes[] = {
#include "DataHashes.inc"
};

} // namespace

std::vector<DataFile> dataFiles(const std::vector<const Block*>& blocks)
{
    std::vector<DataFile> files;
    for (const Block* block : blocks) {
        const std::string name = block->dataFile();
        if (std::any_of(files.begin(), files.end(), [&](const DataFile& known) { return known.name == name; }))
            continue;
        for (const auto& [file, hash] : kHashes) {
            if (file == name)
                files.push_back({name, std::string(hash)});
        }
    }
    return files;
}

} // namespace zelm::host
