#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// The name that stands for standard input where a file is read.
inline constexpr std::string_view kStandardInput = "-";
/// Larger files are refused.
inline constexpr std::size_t kMostFileBytes = std::size_t{256} << 20;

/// A file's content. An Error says what is in the way: no such file, a folder, not readable, too large, empty.
std::string readFile(const std::string& path);

/// While one lives, readFile gives this thread a text for the file of that name, whether or not there is one.
class GivenText {
public:
    GivenText(std::string name, std::string text);
    ~GivenText();
    GivenText(const GivenText&) = delete;
    GivenText& operator=(const GivenText&) = delete;

private:
    std::string m_name;
};

/// Writes a file whole or not at all: beside it, then in its place, with its permissions. A link is followed; a device
/// or FIFO is written to as it stands. An Error, with the old file untouched, if that fails.
void writeFile(const std::string& path, std::string_view text);

/// Throws an Error if one of the files to write is unnamed, named twice, or one that this run reads. Empty names of
/// inputs are passed over.
void refuseOverwriting(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs);

/// Why a path can't be read as an ordinary file: "there is no such file", "is a folder"; empty if it can.
std::string whyUnreadable(const std::string& path);

/// Writes to an open file, whatever becomes of signals and slow readers. Whether all of it was taken; else errno tells.
bool writeAll(int descriptor, std::string_view text);

} // namespace zelm::host
