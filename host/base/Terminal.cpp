#include "host/base/Terminal.h"

#include "host/base/Files.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace zelm::host {

namespace {

std::string_view variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

// One that understands escape sequences.
bool isTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) == 1 && variable("TERM") != "dumb";
}

// Where the complaints of this thread go, if not to standard error.
thread_local std::vector<std::string>* t_complaints = nullptr;

} // namespace

bool takesColour(std::FILE* stream)
{
    return isTerminal(stream) && variable("NO_COLOR").empty();
}

std::size_t terminalColumns()
{
    if (isatty(STDOUT_FILENO) != 1)
        return 0;
    const std::string_view given = variable("COLUMNS");
    std::size_t columns = 0;
    if (std::from_chars(given.data(), given.data() + given.size(), columns).ec == std::errc() && columns > 0)
        return columns;
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void say(const std::string& text)
{
    static_cast<void>(writeAll(STDERR_FILENO, shown(text) + "\n"));
}

void complain(const std::string& text)
{
    if (t_complaints) {
        t_complaints->push_back(text);
        return;
    }
    const std::string mark = Paint(takesColour(stderr)).bad("zelm:");
    static_cast<void>(writeAll(STDERR_FILENO, fmt::format("{} {}\n", mark, shown(text))));
}

HeardComplaints::HeardComplaints(std::vector<std::string>& complaints)
    : m_before(std::exchange(t_complaints, &complaints))
{
}

HeardComplaints::~HeardComplaints()
{
    t_complaints = m_before;
}

std::string Paint::title(const std::string& text) const
{
    return painted("1", text);
}

std::string Paint::good(const std::string& text) const
{
    return painted("32", text);
}

std::string Paint::bad(const std::string& text) const
{
    return painted("1;31", text);
}

std::string Paint::warning(const std::string& text) const
{
    return painted("33", text);
}

std::string Paint::painted(const char* code, const std::string& text) const
{
    return m_colour ? fmt::format("\x1b[{}m{}\x1b[0m", code, text) : text;
}

Progress::Progress(std::string what, std::size_t steps, std::chrono::milliseconds after)
    : m_what(std::move(what)), m_steps(steps), m_terminal(isTerminal(stderr)), m_next(Clock::now() + after)
{
}

Progress::~Progress()
{
    wipe();
}

void Progress::wipe()
{
    if (std::exchange(m_shown, false))
        static_cast<void>(writeAll(STDERR_FILENO, "\r\x1b[K"));
}

void Progress::step(std::size_t done)
{
    constexpr std::size_t width = 40;
    m_done += done;
    const auto now = Clock::now();
    if (!m_terminal || now < m_next)
        return;
    m_next = now + std::chrono::milliseconds(50);
    m_shown = true;
    const std::size_t filled = m_steps == 0
                                   ? width
                                   : static_cast<std::size_t>(static_cast<double>(width) * static_cast<double>(m_done) /
                                                              static_cast<double>(m_steps));
    static_cast<void>(writeAll(
        STDERR_FILENO, fmt::format("\r{} [{:<{}}] {}/{}", m_what, std::string(filled, '#'), width, m_done, m_steps)));
}

} // namespace zelm::host
