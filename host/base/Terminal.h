#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace zelm::host {

/// Whether escape sequences belong on this stream: a terminal that isn't dumb, and no NO_COLOR in the environment.
bool takesColour(std::FILE* stream);

/// The columns of the terminal that standard output is, or that COLUMNS gives; 0 if it is none.
std::size_t terminalColumns();

/// Says one line on standard error; text of others that it quotes can't steer the terminal. What can't be said is
/// dropped: no run fails for that.
void say(const std::string& text);
/// The same with the tool's name in front, for what people should mend.
void complain(const std::string& text);

/// While one lives, what this thread complains of goes to a list and not to standard error.
class HeardComplaints {
public:
    explicit HeardComplaints(std::vector<std::string>& complaints);
    ~HeardComplaints();
    HeardComplaints(const HeardComplaints&) = delete;
    HeardComplaints& operator=(const HeardComplaints&) = delete;

private:
    std::vector<std::string>* m_before;
};

/// Paints words for a terminal, or leaves them as they are.
class Paint {
public:
    explicit Paint(bool colour = false) : m_colour(colour) {}

    std::string title(const std::string& text) const;
    std::string good(const std::string& text) const;
    std::string bad(const std::string& text) const;
    std::string warning(const std::string& text) const;

private:
    std::string painted(const char* code, const std::string& text) const;

    bool m_colour;
};

/// A bar on standard error for work of many like steps, once that has taken a while; only on a terminal. Its line is
/// wiped at the end of the scope.
class Progress {
public:
    Progress(std::string what, std::size_t steps, std::chrono::milliseconds after);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step(std::size_t done = 1);
    /// Takes the bar away until the next step, for other lines.
    void wipe();

private:
    using Clock = std::chrono::steady_clock;

    std::string m_what;
    std::size_t m_steps;
    std::size_t m_done = 0;
    bool m_terminal;
    bool m_shown = false;
    Clock::time_point m_next;
};

} // namespace zelm::host
