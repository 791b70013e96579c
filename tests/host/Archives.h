#pragma once

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <zip.h>

namespace zelm::test {

/// An archive's files by name.
using Archive = std::map<std::string, std::string>;

inline Archive unpacked(const std::string& file)
{
    int error = 0;
    zip_t* zip = zip_open(file.c_str(), ZIP_RDONLY, &error);
    if (!zip)
        throw std::runtime_error("no archive: " + file);
    Archive files;
    for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
        zip_stat_t status;
        zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &status);
        std::string text(status.size, '\0');
        zip_file_t* one = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
        zip_fread(one, text.data(), text.size());
        zip_fclose(one);
        files[status.name] = text;
    }
    zip_discard(zip);
    return files;
}

inline void pack(const Archive& files, const std::string& file)
{
    int error = 0;
    zip_t* zip = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!zip)
        throw std::runtime_error("cannot write: " + file);
    for (const auto& [name, text] : files)
        zip_file_add(zip, name.c_str(), zip_source_buffer(zip, text.data(), text.size(), 0), ZIP_FL_OVERWRITE);
    if (zip_close(zip) != 0)
        throw std::runtime_error("cannot pack: " + file);
}

} // namespace zelm::test
