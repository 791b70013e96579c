#pragma once

#include "host/commands/Options.h"

#include <chrono>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace zelm::host {

/// How the tool ends.
inline constexpr int kSuccess = 0;
inline constexpr int kBudgetBroken = 1; // or a warning, if it is to count
inline constexpr int kUserError = 2;
inline constexpr int kSignalled = 128; // plus the signal's number, as shells say it

/// One run of the tool: what all commands are told, and what the chosen one says.
struct Run {
    bool verbose = false;
    std::chrono::milliseconds barAfter{}; ///< when a progress bar shows
    std::string out;                      ///< for standard output, printed at the end: an error leaves no half of it
    std::function<void(std::string_view)> print; ///< the same at once, for output without end
};

/// What a command does once its options are read. The exit code.
using Action = std::function<int(Run&)>;

/// A subcommand: declares its options and tells what to do with them, or has subcommands of its own that do.
struct Command {
    const char* name;
    const char* description;
    const char* example; ///< what to type, as the help ends
    Action (*declare)(Options& options) = nullptr;
    std::span<const Command> (*commands)() = nullptr;
};

Action declareBlocks(Options& options);
Action declareCalc(Options& options);
Action declareCells(Options& options);
Action declareCheckData(Options& options);
Action declareDiff(Options& options);
Action declareDocs(Options& options);
Action declareEstimate(Options& options);
Action declareExplain(Options& options);
Action declareFit(Options& options);
Action declareFormat(Options& options);
Action declareImportActivity(Options& options);
Action declareImportNetlist(Options& options);
Action declareImportTable(Options& options);
Action declareLive(Options& options);
Action declareNew(Options& options);
Action declareParts(Options& options);
Action declarePropagate(Options& options);
Action declareSample(Options& options);
Action declareSchema(Options& options);
Action declareSensitivity(Options& options);
Action declareSolve(Options& options);
Action declareStandards(Options& options);
Action declareSweep(Options& options);

/// All subcommands, as the help lists them.
std::span<const Command> allCommands();
/// The subcommands of import.
std::span<const Command> importCommands();
/// The subcommands of export.
std::span<const Command> exportCommands();

} // namespace zelm::host
