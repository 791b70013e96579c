#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace zelm::host {

/// The options of one subcommand, without the parser's large headers. What a declaration returns holds the option's
/// value once the command line is read.
class Options {
public:
    Options(CLI::App& command, std::string& dataDirectory);

    const bool& flag(const std::string& name, const std::string& description);
    /// A flag behind which one of some words may stand. Empty unless given, "true" without a word.
    const std::string& flagOf(const std::string& name, const std::vector<std::string>& words,
                              const std::string& description);
    /// None unless given: an empty text is one.
    const std::optional<std::string>& text(const std::string& name, const std::string& description);
    /// The same for a word or number; what is its name in the help.
    const std::optional<std::string>& value(const std::string& name, const std::string& what,
                                            const std::string& description);
    /// A whole number above 0; 0 unless given.
    const unsigned& count(const std::string& name, const std::string& description);
    const std::string& required(const std::string& name, const std::string& description);
    /// An option that must be given; what is its value's name in the help.
    const std::string& requiredValue(const std::string& name, const std::string& what, const std::string& description);
    const std::vector<std::string>& list(const std::string& name, const std::string& description);
    /// An option that may stand more than once, each time with one value, and must once.
    const std::vector<std::string>& repeated(const std::string& name, const std::string& description);
    /// An argument that stands for the tool's own --datadir.
    void dataDirectory(const std::string& name, const std::string& description);
    /// The flags and words of flagOf, which the command line may have with a space between.
    const std::vector<std::pair<std::string, std::vector<std::string>>>& flagsOf() const
    {
        return m_flagsOf;
    }
    /// Two flags of which at most one may be given.
    void exclude(const std::string& one, const std::string& other);

private:
    CLI::App* m_command;
    std::string* m_dataDirectory;
    std::vector<std::pair<std::string, std::vector<std::string>>> m_flagsOf;
    std::deque<bool> m_flags; // deques: what is handed out stays where it is
    std::deque<unsigned> m_counts;
    std::deque<std::string> m_texts;
    std::deque<std::optional<std::string>> m_optionals;
    std::deque<std::vector<std::string>> m_lists;
};

} // namespace zelm::host
