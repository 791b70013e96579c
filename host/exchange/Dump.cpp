#include "host/exchange/Dump.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/exchange/Saif.h"
#include "host/exchange/Vcd.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace zelm::host {

namespace {

constexpr std::size_t kLeastDumpBuffer = std::size_t{64} << 10;
constexpr std::size_t kMostDumpBuffer = std::size_t{4} << 20;

} // namespace

ScopeTree::ScopeTree() : m_scopes(1) {}

std::string ScopeTree::keyOf(std::uint32_t parent, std::string_view name)
{
    return fmt::format("{} {}", parent, name);
}

std::optional<std::uint32_t> ScopeTree::find(std::uint32_t parent, std::string_view name) const
{
    const auto found = m_byName.find(keyOf(parent, name));
    return found == m_byName.end() ? std::nullopt : std::optional(found->second);
}

std::uint32_t ScopeTree::add(std::uint32_t parent, std::string_view name)
{
    const auto [place, isNew] = m_byName.emplace(keyOf(parent, name), static_cast<std::uint32_t>(m_scopes.size()));
    if (isNew)
        m_scopes.push_back({parent, m_scopes[parent].depth + 1, std::string(name)});
    return place->second;
}

std::string ScopeTree::path(std::uint32_t scope) const
{
    std::string text;
    for (; scope != 0; scope = m_scopes[scope].parent)
        text.insert(0, m_scopes[scope].name + (text.empty() ? "" : "."));
    return text;
}

DumpWords::DumpWords(const std::string& file) : m_file(file)
{
    m_descriptor = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status = {};
    const bool opened = m_descriptor >= 0 && ::fstat(m_descriptor, &status) == 0;
    const int error = errno;
    if (opened && S_ISREG(status.st_mode)) {
        m_buffer.resize(std::clamp(static_cast<std::size_t>(status.st_size) + 1, kLeastDumpBuffer, kMostDumpBuffer));
        return;
    }
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    throw Error(fmt::format("{}: cannot be read: {}", shown(file),
                            !opened                   ? std::strerror(error)
                            : S_ISDIR(status.st_mode) ? "is a folder"
                                                      : "is a device or FIFO, and activity is read twice"));
}

DumpWords::~DumpWords()
{
    ::close(m_descriptor);
}

void DumpWords::fail(const std::string& message) const
{
    throw Error(fmt::format("{}:{}: {}", shown(m_file), m_line, message));
}

// What is begun moves to the front, what follows is read behind it.
void DumpWords::fill()
{
    const auto begun = static_cast<std::size_t>(m_end - m_at);
    if (begun == m_buffer.size())
        fail(fmt::format("a word is longer than {} MB", m_buffer.size() >> 20));
    if (begun > 0)
        std::memmove(m_buffer.data(), m_at, begun);
    ssize_t taken = 0;
    do
        taken = ::read(m_descriptor, m_buffer.data() + begun, m_buffer.size() - begun);
    while (taken < 0 && errno == EINTR);
    if (taken < 0)
        throw Error(fmt::format("{}: cannot be read: {}", shown(m_file), std::strerror(errno)));
    m_over = taken == 0;
    m_at = m_buffer.data();
    m_end = m_at + begun + static_cast<std::size_t>(taken);
}

std::pair<std::string_view, std::string_view> nameAndSelect(std::string_view name)
{
    const std::size_t bracket = name.rfind('[');
    if (bracket == std::string_view::npos || bracket == 0 || !name.ends_with(']'))
        return {name, {}};
    return {name.substr(0, bracket), name.substr(bracket + 1, name.size() - bracket - 2)};
}

std::optional<double> timescaleSeconds(std::string_view text)
{
    constexpr std::pair<std::string_view, double> units[] = {{"s", 1.0},   {"ms", 1e-3},  {"us", 1e-6},
                                                             {"ns", 1e-9}, {"ps", 1e-12}, {"fs", 1e-15}};
    const std::size_t digits = std::min(text.find_first_not_of("0123456789."), text.size());
    const std::optional<double> number = plainNumber(text.substr(0, digits));
    const std::string_view unit = text.substr(std::min(text.find_first_not_of(" \t\r\n", digits), text.size()));
    for (const auto& [name, seconds] : units) {
        if (number && *number > 0.0 && unit == name)
            return *number * seconds;
    }
    return std::nullopt;
}

std::unique_ptr<Dump> openDump(const std::string& file)
{
    DumpWords words(file);
    constexpr int gzip = 0x1f;
    constexpr std::string_view packed[] = {"BZh",
                                           "\xfd"
                                           "7zXZ",
                                           "\x28\xb5\x2f\xfd"};
    const bool isGzip = words.peek() == gzip;
    const std::string_view first = words.next();
    if (isGzip || std::any_of(std::begin(packed), std::end(packed),
                              [&](std::string_view magic) { return first.starts_with(magic); }))
        throw Error(fmt::format("{}: is compressed; unpack it first", shown(file)));
    if (first.empty())
        throw Error(fmt::format("{}: is empty", shown(file)));
    if (first.starts_with('$') || first.starts_with('#'))
        return std::make_unique<Vcd>(file);
    if (first.starts_with('(') || first.starts_with('/'))
        return std::make_unique<Saif>(file);
    throw Error(fmt::format("{}: is neither VCD, which begins with $, nor SAIF, which begins with (", shown(file)));
}

} // namespace zelm::host
