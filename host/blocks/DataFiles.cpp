#include "host/blocks/DataFiles.h"

#include "host/blocks/DataLines.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

namespace zelm::host {

namespace {

std::string sha256(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return sha256Of(content);
}

} // namespace

std::string sha256Of(std::string_view content)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    EVP_Digest(content.data(), content.size(), digest.data(), &length, EVP_sha256(), nullptr);
    std::string text;
    for (unsigned int i = 0; i < length; ++i)
        text += fmt::format("{:02x}", digest[i]);
    return text;
}

std::vector<DataFile> dataFiles(const std::vector<const Block*>& blocks)
{
    std::vector<DataFile> files;
    for (const Block* block : blocks) {
        const std::string name = block->dataFile();
        if (std::none_of(files.begin(), files.end(), [&](const DataFile& known) { return known.name == name; }))
            files.push_back({name, sha256(dataPath(name))});
    }
    return files;
}

} // namespace zelm::host
