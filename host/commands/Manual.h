#pragma once

#include <string>
#include <vector>

namespace zelm::host {

/// An option or argument as the help has it.
struct ManualEntry {
    std::string name; ///< all its spellings: "-v,--verbose"
    std::string description;
    bool isArgument = false;
    bool takesValue = false;
    bool takesFile = false;
};

struct ManualCommand {
    std::string name;
    std::string description;
    std::string example;
    std::vector<ManualEntry> entries;
    std::vector<ManualCommand> commands; ///< its own subcommands
};

/// What the help says, all of it.
struct Manual {
    std::string description;
    std::string exitCodes;
    std::vector<ManualEntry> entries; ///< of every command
    std::vector<ManualCommand> commands;
};

/// The manual as a man page ("man"), or as what completes words in a shell ("bash", "zsh").
std::string manualText(const Manual& manual, const std::string& form);

} // namespace zelm::host
