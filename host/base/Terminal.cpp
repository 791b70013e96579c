#include "host/base/Terminal.h"

#include <fmt/format.h>

#include <cstdlib>
#include <string_view>
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

} // namespace

bool takesColour(std::FILE* stream)
{
    return isTerminal(stream) && variable("NO_COLOR").empty();
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
    if (m_shown)
        fmt::print(stderr, "\r\x1b[K");
}

void Progress::step()
{
    constexpr std::size_t width = 40;
    ++m_done;
    const auto now = Clock::now();
    if (!m_terminal || now < m_next)
        return;
    m_next = now + std::chrono::milliseconds(50);
    m_shown = true;
    const std::size_t filled = m_steps == 0 ? width : width * m_done / m_steps;
    fmt::print(stderr, "\r{} [{:<{}}] {}/{}", m_what, std::string(filled, '#'), width, m_done, m_steps);
    std::fflush(stderr);
}

} // namespace zelm::host
