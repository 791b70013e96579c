#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zelm::host {

/// Files with more are refused, so that no file takes more memory than these.
inline constexpr std::size_t kMostScopes = 200000;
inline constexpr std::size_t kDeepestScope = 1000;
inline constexpr std::size_t kMostVariables = 4000000;
inline constexpr std::size_t kMostNetBits = 1u << 20; ///< of one variable
inline constexpr std::size_t kMostDumpBits = 200000000;

/// The hierarchy of a simulation: scopes by number, 0 is what holds all others.
class ScopeTree {
public:
    ScopeTree();
    /// The scope of that name in another, which is made if there is none.
    std::uint32_t add(std::uint32_t parent, std::string_view name);
    std::optional<std::uint32_t> find(std::uint32_t parent, std::string_view name) const;
    std::uint32_t parent(std::uint32_t scope) const
    {
        return m_scopes[scope].parent;
    }
    const std::string& name(std::uint32_t scope) const
    {
        return m_scopes[scope].name;
    }
    std::size_t depth(std::uint32_t scope) const
    {
        return m_scopes[scope].depth;
    }
    std::size_t size() const
    {
        return m_scopes.size();
    }
    /// "top.dut.fir"
    std::string path(std::uint32_t scope) const;

private:
    struct Scope {
        std::uint32_t parent = 0;
        std::size_t depth = 0;
        std::string name;
    };
    static std::string keyOf(std::uint32_t parent, std::string_view name);

    std::vector<Scope> m_scopes;
    std::unordered_map<std::string, std::uint32_t> m_byName;
};

/// What a net's bits do in the window, together. A toggle is a bit that goes from 0 to 1 or back; over x or z is none.
struct NetCount {
    std::uint32_t bits = 1;
    double toggles = 0.0;
    double high = 0.0;  ///< bits x time at 1
    double known = 0.0; ///< bits x time at 0 or 1
};

/// A variable as a dump declares it. Several may be one net: ports and what they are connected to.
struct DumpVariable {
    std::uint32_t scope = 0;
    std::string_view name;   ///< without a range
    std::string_view select; ///< "3" of a bit that is a variable of its own, "7:0" of a range
    std::uint32_t bits = 1;
    bool isNet = true; ///< false for reals, parameters and such
    std::uint32_t net = 0;
};

/// A name's own part, and what stands in brackets behind it.
std::pair<std::string_view, std::string_view> nameAndSelect(std::string_view name);

/// What part of the time counts, in the dump's units.
struct DumpWindow {
    std::uint64_t from = 0;
    std::uint64_t to = std::numeric_limits<std::uint64_t>::max();
};

struct DumpCounts {
    std::vector<NetCount> nets; ///< by the number that the variable had
    double duration = 0.0;      ///< of the window, in the dump's units
};

/// A file of simulated activity, read as it streams by.
class Dump {
public:
    virtual ~Dump() = default;

    const std::string& file() const
    {
        return m_file;
    }
    /// Known once the scopes are read.
    double secondsPerUnit() const
    {
        return m_secondsPerUnit;
    }
    virtual bool hasWindows() const = 0;
    virtual ScopeTree scopes() = 0;
    /// Counts what wants() says of each variable; one that is wanted under any name is counted once.
    virtual DumpCounts count(ScopeTree& tree, const DumpWindow& window,
                             const std::function<bool(const DumpVariable&)>& wants) = 0;

protected:
    explicit Dump(std::string file) : m_file(std::move(file)) {}

    std::string m_file;            // NOLINT(*-non-private-member-variables-in-classes)
    double m_secondsPerUnit = 0.0; // NOLINT(*-non-private-member-variables-in-classes)
};

/// A file's bytes, a buffer at a time, as words between blanks.
class DumpWords {
public:
    explicit DumpWords(const std::string& file);
    ~DumpWords();
    DumpWords(const DumpWords&) = delete;
    DumpWords& operator=(const DumpWords&) = delete;

    /// The next word, valid until the one after it is asked for; empty at the end.
    std::string_view next()
    {
        for (;;) {
            while (m_at < m_end && static_cast<unsigned char>(*m_at) <= ' ')
                m_line += *m_at++ == '\n' ? 1u : 0u;
            const char* end = m_at;
            while (end<m_end&& static_cast<unsigned char>(*end)> ' ')
                ++end;
            if (end > m_at && (end < m_end || m_over)) {
                const std::string_view word(m_at, static_cast<std::size_t>(end - m_at));
                m_at = end;
                return word;
            }
            if (m_at == m_end && m_over)
                return {};
            fill();
        }
    }
    /// The next byte, -1 at the end, for files whose words aren't between blanks.
    int peek()
    {
        if (m_at == m_end && !m_over)
            fill();
        return m_at == m_end ? -1 : static_cast<unsigned char>(*m_at);
    }
    void skip()
    {
        m_line += *m_at++ == '\n' ? 1u : 0u;
    }
    std::size_t line() const
    {
        return m_line;
    }
    [[noreturn]] void fail(const std::string& message) const;

private:
    void fill();

    std::string m_file;
    int m_descriptor = -1;
    std::vector<char> m_buffer;
    const char* m_at = nullptr;
    const char* m_end = nullptr;
    bool m_over = false;
    std::size_t m_line = 1;
};

/// "1 ns", "10us" in seconds; nothing for any other text.
std::optional<double> timescaleSeconds(std::string_view text);

/// Opens a dump by what it holds: VCD or SAIF.
std::unique_ptr<Dump> openDump(const std::string& file);

} // namespace zelm::host
