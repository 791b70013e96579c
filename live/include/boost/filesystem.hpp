#pragma once

// What the library asks of Boost.Filesystem, from the standard library: Boost's own is compiled, and its sources are as
// large as all of Boost.

#include <boost/system/error_code.hpp>

#include <filesystem>

namespace boost::filesystem {

using std::filesystem::exists;
using std::filesystem::path;

inline bool is_directory(const path& path, boost::system::error_code&)
{
    std::error_code unexamined;
    return std::filesystem::is_directory(path, unexamined);
}

} // namespace boost::filesystem
