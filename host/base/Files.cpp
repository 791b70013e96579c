#include "host/base/Files.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zelm::host {

namespace {

std::string words(int error)
{
    switch (error) {
    case ENOENT:
        return "there is no such file";
    case ENOTDIR:
        return "a part of this path is a file, not a folder";
    case EISDIR:
        return "is a folder, not a file";
    case EACCES:
    case EPERM:
        return "permission denied";
    case ELOOP:
        return "too many links, or links in a circle";
    case ENAMETOOLONG:
        return "the name is too long";
    case ENXIO:
        return "nobody reads from the other end";
    case EPIPE:
        return "the reader went away";
    case ENOSPC:
        return "no space left";
    case EFBIG:
        return "larger than files may be here";
    default:
        return std::strerror(error); // NOLINT(concurrency-mt-unsafe): errors end the run
    }
}

[[noreturn]] void failFile(const std::string& path, std::string_view what, int error)
{
    throw Error(fmt::format("{}: {}: {}", shown(path), what, words(error)));
}

class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number > STDERR_FILENO)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const
    {
        return m_number;
    }
    /// Whether what was written arrived: some file systems tell no sooner.
    bool close()
    {
        return ::close(std::exchange(m_number, -1)) == 0;
    }

private:
    int m_number;
};

std::optional<struct stat> statusOf(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void await(int descriptor, short events, int milliseconds)
{
    pollfd one{descriptor, events, 0};
    ::poll(&one, 1, milliseconds);
}

// What is there to read. A FIFO that nobody writes to is as good as empty after a while.
std::string readOpen(int descriptor, const std::string& name)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds patience{2};
    constexpr int pause = 20; // milliseconds
    struct stat status = {};
    const bool isFifo = ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
    const auto deadline = Clock::now() + patience;
    std::string text;
    if (S_ISREG(status.st_mode))
        text.reserve(std::min(kMostFileBytes, static_cast<std::size_t>(status.st_size)));
    std::vector<char> chunk(std::size_t{1} << 16);
    while (true) {
        const ssize_t got = ::read(descriptor, chunk.data(), chunk.size());
        if (got > 0) {
            text.append(chunk.data(), static_cast<std::size_t>(got));
            if (text.size() > kMostFileBytes)
                throw Error(fmt::format("{}: larger than {} MB", name, kMostFileBytes >> 20));
        } else if (got == 0 && isFifo && descriptor != STDIN_FILENO && text.empty() && Clock::now() < deadline) {
            await(descriptor, 0, pause);
        } else if (got == 0) {
            return text;
        } else if (errno == EAGAIN) {
            await(descriptor, POLLIN, -1);
        } else if (errno != EINTR) {
            failFile(name, "cannot be read", errno);
        }
    }
}

// Where the links at the end of a path lead, even if nothing is there yet.
std::string linkTarget(const std::string& path)
{
    constexpr int mostLinks = 40;
    std::filesystem::path target = path;
    std::error_code none;
    for (int links = 0; std::filesystem::is_symlink(std::filesystem::symlink_status(target, none)); ++links) {
        if (links == mostLinks)
            failFile(path, "cannot be written", ELOOP);
        const std::filesystem::path to = std::filesystem::read_symlink(target, none);
        if (none)
            failFile(path, "cannot be written", none.value());
        target = target.parent_path() / to; // an absolute one replaces all
    }
    return target.string();
}

// The same for all spellings of a path that is not there yet.
std::filesystem::path placeOf(const std::string& path)
{
    std::error_code none;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(linkTarget(path), none), none);
}

// A device, a FIFO, or what the shell has opened for this run.
void writeStream(const std::string& path, int descriptor, std::string_view text)
{
    if (!writeAll(descriptor, text))
        failFile(path, "cannot be written", errno);
}

std::string folderOf(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

mode_t permissionsFor(const std::optional<struct stat>& old)
{
    if (old)
        return old->st_mode & 07777U;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666U & ~mask;
}

// Opens the file that is to take another's place. Where the system can, it has no name before it is whole, so that a
// killed run leaves nothing behind; the name is empty then.
int openBeside(const std::string& folder, std::string& name)
{
    if (::access("/proc/self/fd", F_OK) == 0) {
        if (const int unnamed = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600); unnamed >= 0)
            return unnamed;
    }
    name = folder + "/.zelm-XXXXXX";
    const int named = ::mkostemp(name.data(), O_CLOEXEC);
    if (named < 0)
        name.clear();
    return named;
}

// A name can be moved over another, but not given over it: for that instant the file has one of its own.
bool giveName(int descriptor, const std::string& folder, std::string& name)
{
    const std::string self = fmt::format("/proc/self/fd/{}", descriptor);
    constexpr int most = 1000; // left behind by runs of the same number that were killed in that instant
    for (int i = 0; i < most; ++i) {
        const std::string beside = fmt::format("{}/.zelm-{}-{}", folder, ::getpid(), i);
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, beside.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            name = beside;
            return true;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

void replaceFile(const std::string& path, const std::string& target, const std::optional<struct stat>& old,
                 std::string_view text)
{
    const std::string folderName = folderOf(target);
    std::string beside;
    Descriptor file(openBeside(folderName, beside));
    if (file.number() < 0)
        failFile(path, "cannot be written", errno);
    // To keep the owner is root's business, and may fail; it clears some permissions, which are therefore set after.
    if (old && (old->st_uid != ::geteuid() || old->st_gid != ::getegid()))
        static_cast<void>(::fchown(file.number(), old->st_uid, old->st_gid) == 0);
    const bool written = ::fchmod(file.number(), permissionsFor(old)) == 0 && writeAll(file.number(), text) &&
                         ::fsync(file.number()) == 0 &&
                         (!beside.empty() || giveName(file.number(), folderName, beside)) && file.close() &&
                         ::rename(beside.c_str(), target.c_str()) == 0;
    if (!written) {
        const int error = errno;
        if (!beside.empty())
            ::unlink(beside.c_str());
        failFile(path, "cannot be written", error);
    }
    // That the name lasts as well; not every file system can, and the file is whole either way.
    const Descriptor folder(::open(folderName.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.number() >= 0)
        static_cast<void>(::fsync(folder.number()));
}

// By name; of this thread.
std::map<std::string, std::string>& givenTexts()
{
    thread_local std::map<std::string, std::string> texts;
    return texts;
}

} // namespace

GivenText::GivenText(std::string name, std::string text) : m_name(std::move(name))
{
    givenTexts()[m_name] = std::move(text);
}

GivenText::~GivenText()
{
    givenTexts().erase(m_name);
}

std::string readFile(const std::string& path)
{
    if (path.empty())
        throw Error("the name of the file to read is empty");
    std::string text;
    if (const auto given = givenTexts().find(path); given != givenTexts().end()) {
        text = given->second;
    } else if (path == kStandardInput) {
        text = readOpen(STDIN_FILENO, "standard input");
    } else {
        const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (file.number() < 0)
            failFile(path, "cannot be read", errno);
        text = readOpen(file.number(), path);
    }
    if (text.empty())
        throw Error(fmt::format("{}: is empty", path == kStandardInput ? "standard input" : shown(path)));
    return text;
}

bool writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t taken = ::write(descriptor, text.data(), text.size());
        if (taken >= 0)
            text.remove_prefix(static_cast<std::size_t>(taken));
        else if (errno == EAGAIN)
            await(descriptor, POLLOUT, -1);
        else if (errno != EINTR)
            return false;
    }
    return true;
}

void writeFile(const std::string& path, std::string_view text)
{
    refuseOverwriting({path}, {});
    const std::optional<struct stat> old = statusOf(path);
    if (!old && errno != ENOENT)
        failFile(path, "cannot be written", errno);
    for (const int open : {STDOUT_FILENO, STDERR_FILENO}) {
        struct stat status = {};
        if (old && ::fstat(open, &status) == 0 && sameFile(*old, status)) {
            writeStream(path, open, text);
            return;
        }
    }
    if (old && S_ISDIR(old->st_mode))
        failFile(path, "cannot be written", EISDIR);
    if (old && !S_ISREG(old->st_mode)) {
        const Descriptor stream(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (stream.number() < 0)
            failFile(path, "cannot be written", errno);
        writeStream(path, stream.number(), text);
        return;
    }
    if (old && ::access(path.c_str(), W_OK) != 0) // to replace a file would get past its permissions
        failFile(path, "cannot be written", errno);
    replaceFile(path, linkTarget(path), old, text);
}

void refuseOverwriting(const std::vector<std::string>& outputs, const std::vector<std::string>& inputs)
{
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        const std::string& output = outputs[i];
        if (output.empty())
            throw Error("the name of the file to write is empty");
        if (output == kStandardInput)
            throw Error("\"-\" is standard input; give the file to write a name (./- or /dev/stdout, say)");
        const auto status = statusOf(output);
        const auto isSame = [&](const std::string& other) {
            const auto otherStatus = statusOf(other);
            if (!status || !otherStatus)
                return !status && !otherStatus && placeOf(output) == placeOf(other);
            return S_ISREG(status->st_mode) && sameFile(*status, *otherStatus);
        };
        for (std::size_t j = 0; j < i; ++j) {
            if (isSame(outputs[j]))
                throw Error(fmt::format("{}: two reports would be written to this file", shown(output)));
        }
        for (const std::string& input : inputs) {
            if (status && isSame(input == kStandardInput ? "/dev/stdin" : input))
                throw Error(fmt::format("{}: this run reads this file, so it isn't written over", shown(output)));
        }
    }
}

std::string whyUnreadable(const std::string& path)
{
    const auto status = statusOf(path);
    if (!status)
        return words(errno);
    if (S_ISDIR(status->st_mode))
        return words(EISDIR);
    if (!S_ISREG(status->st_mode))
        return "is a device or FIFO, not a file";
    if (::access(path.c_str(), R_OK) != 0)
        return words(errno);
    if (status->st_size == 0)
        return "is empty";
    return static_cast<std::size_t>(status->st_size) > kMostFileBytes
               ? fmt::format("larger than {} MB", kMostFileBytes >> 20)
               : std::string();
}

} // namespace zelm::host
