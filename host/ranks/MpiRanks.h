#pragma once

#include "host/commands/Command.h"

#include <span>

namespace zelm::host {

/// runTool() on each of the ranks that an MPI launcher started. The first one runs the command; the others work on
/// pieces of it, one at a time. The exit code.
int runOnRanks(int argc, char** argv, std::span<const Command> commands);

} // namespace zelm::host
