#include "host/base/GrowingFile.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace zelm::host {

namespace {

constexpr mode_t kNewFile = 0666; // less what the user's mask takes

[[noreturn]] void failGrowing(const std::string& path, const std::string& why)
{
    throw Error(fmt::format("{}: {}", shown(path), why));
}

[[noreturn]] void failWriting(const std::string& path)
{
    const std::string why = std::strerror(errno); // NOLINT(concurrency-mt-unsafe): errors end the run
    failGrowing(path, fmt::format("cannot be written: {}", why));
}

int openToGrow(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, kNewFile);
    if (descriptor < 0)
        failWriting(path);
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        failGrowing(path, "is a device or FIFO, not a file, so that nothing can be gone on with");
    }
    return descriptor;
}

bool isThere(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0;
}

// How far a file got: what a line of the log says.
struct LoggedChunk {
    std::size_t chunks = 0;
    std::size_t bytes = 0;
    std::size_t noted = 0;
};

std::optional<LoggedChunk> loggedChunk(std::string_view line)
{
    LoggedChunk logged;
    const char* at = line.data();
    const char* const end = at + line.size();
    for (std::size_t* number : {&logged.chunks, &logged.bytes, &logged.noted}) {
        const auto [behind, error] = std::from_chars(at, end, *number);
        const bool isLast = number == &logged.noted;
        if (error != std::errc() || (isLast ? behind != end : behind == end || *behind != ' '))
            return std::nullopt;
        at = behind + (isLast ? 0 : 1);
    }
    return logged;
}

// What differs between two studies, in words.
std::string differences(const Json& was, const Json& is)
{
    std::vector<std::string> words;
    for (const auto& [name, value] : is.items()) {
        const auto before = was.find(name);
        if (before == was.end() || *before != value)
            words.push_back(fmt::format("{} was {} and is {}", name,
                                        before == was.end() ? "not there" : abbreviated(compactJson(*before), 120),
                                        abbreviated(compactJson(value), 120)));
    }
    return fmt::format("{}", fmt::join(words, "; "));
}

} // namespace

GrowingFile::GrowingFile(const std::string& path, const std::string& log, const Json& study)
    : m_path(path), m_logPath(log)
{
    if (path.empty())
        throw Error("the name of the file to go on with is empty");
    if (!isThere(m_logPath) && isThere(m_path))
        failGrowing(m_path, fmt::format("is there, but {} isn't, which a study leaves that was killed: this one is "
                                        "whole, or another's file. Remove it, or give another name",
                                        shown(m_logPath)));
    m_log = openToGrow(m_logPath);
    if (::flock(m_log, LOCK_EX | LOCK_NB) != 0)
        failGrowing(m_path, "another run is writing it");
    m_file = openToGrow(m_path);
    struct stat status = {};
    const bool begun = ::fstat(m_log, &status) == 0 && status.st_size > 0;
    if (begun)
        goOn(study);
    else
        begin(study);
}

GrowingFile::~GrowingFile()
{
    for (const int descriptor : {m_file, m_log}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

void GrowingFile::begin(const Json& study)
{
    if (::ftruncate(m_file, 0) != 0)
        failWriting(m_path);
    if (!writeAll(m_log, compactJson(study) + "\n"))
        failWriting(m_logPath);
}

void GrowingFile::goOn(const Json& study)
{
    const std::string log = readFile(m_logPath);
    struct stat status = {};
    if (::fstat(m_file, &status) != 0)
        failWriting(m_path);
    const auto written = static_cast<std::size_t>(status.st_size);
    std::size_t begin = log.find('\n');
    const Json was = Json::parse(log.substr(0, begin), nullptr, false);
    if (begin == std::string::npos || !was.is_object())
        failGrowing(m_logPath, "isn't the log of a study");
    if (const std::string differ = differences(was, study); !differ.empty())
        failGrowing(m_path, fmt::format("is of another study, and isn't gone on with: {}", differ));
    std::size_t used = ++begin;
    std::size_t number = 2;
    for (std::size_t end = log.find('\n', begin); end != std::string::npos; end = log.find('\n', begin), ++number) {
        const auto logged = loggedChunk(std::string_view(log).substr(begin, end - begin));
        if (!logged || logged->bytes < m_bytes || logged->chunks != m_chunks + 1)
            throw Error(fmt::format("{}:{}: isn't what a study writes", shown(m_logPath), number));
        if (logged->bytes > written)
            break; // the log reached the disk before the file did
        m_chunks = logged->chunks;
        m_bytes = logged->bytes;
        m_noted = logged->noted;
        begin = used = end + 1;
    }
    if (::ftruncate(m_file, static_cast<off_t>(m_bytes)) != 0 || ::lseek(m_file, 0, SEEK_END) < 0)
        failWriting(m_path);
    if (::ftruncate(m_log, static_cast<off_t>(used)) != 0 || ::lseek(m_log, 0, SEEK_END) < 0)
        failWriting(m_logPath);
}

void GrowingFile::append(std::string_view chunk, std::size_t note)
{
    if (!writeAll(m_file, chunk))
        failWriting(m_path);
    m_bytes += chunk.size();
    m_noted += note;
    ++m_chunks;
    if (!writeAll(m_log, fmt::format("{} {} {}\n", m_chunks, m_bytes, m_noted)))
        failWriting(m_logPath);
}

void GrowingFile::finish()
{
    if (::fsync(m_file) != 0)
        failWriting(m_path);
    if (::unlink(m_logPath.c_str()) != 0)
        failWriting(m_logPath);
}

std::string GrowingFile::logOf(const std::string& path)
{
    return path + ".resume";
}

} // namespace zelm::host
