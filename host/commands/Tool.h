#pragma once

#include "host/commands/Command.h"

#include <span>
#include <string>
#include <vector>

namespace zelm::host {

/// Reads the command line, runs the command that it names and prints what that says; errors are said, none is thrown.
/// The exit code.
int runTool(int argc, char** argv, std::span<const Command> commands);

/// The same, but throws errors, an Error if people can mend it.
int parseAndRun(int argc, char** argv, std::span<const Command> commands);

/// What a command says and how it ends.
struct Said {
    int code = kSuccess;
    std::string out;
    std::vector<std::string> complaints; ///< warnings too
};

/// Runs the command that a line's words name, for a program that goes on: nothing is printed, the data directory stays
/// as it is chosen, and errors are thrown.
Said runCommand(const std::vector<std::string>& words, std::span<const Command> commands);

} // namespace zelm::host
