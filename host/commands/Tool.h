#pragma once

#include "host/commands/Command.h"

#include <span>

namespace zelm::host {

/// Reads the command line, runs the command that it names and prints what that says; errors are said, none is thrown.
/// The exit code.
int runTool(int argc, char** argv, std::span<const Command> commands);

/// The same, but throws errors, an Error if people can mend it.
int parseAndRun(int argc, char** argv, std::span<const Command> commands);

} // namespace zelm::host
