#include "host/DataFiles.h"

#include "host/DataLines.h"

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
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    EVP_Digest(content.data(), content.size(), digest.data(), &length, EVP_sha256(), nullptr);
    std::string text;
    for (unsigned int i = 0; i < length; ++i)
        text += fmt::format("{:02x}", digest[i]);
    return text;
}

} // namespace

std::vector<DataFile> dataFiles(const Estimate& estimate)
{
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    };
    if (estimate.design.device) {
        add(block("Parts").dataFile());
        add(block("Static").dataFile());
    }
    for (const GroupResult& group : estimate.groups)
        add(group.block->dataFile());
    std::vector<DataFile> files;
    for (const std::string& name : names)
        files.push_back({name, sha256(dataPath(name))});
    return files;
}

} // namespace zelm::host
