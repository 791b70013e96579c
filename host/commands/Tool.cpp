// The one source that knows the command line's parser: its headers take seconds to compile.
#include "host/commands/Tool.h"

#include "host/base/Error.h"
#include "host/base/Terminal.h"
#include "host/blocks/DataDirectory.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>

namespace zelm::host {

Options::Options(CLI::App& command, std::string& dataDirectory) : m_command(&command), m_dataDirectory(&dataDirectory)
{
}

const bool& Options::flag(const std::string& name, const std::string& description)
{
    m_command->add_flag(name, m_flags.emplace_back(false), description);
    return m_flags.back();
}

const std::string& Options::text(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_texts.emplace_back(), description);
    return m_texts.back();
}

const std::string& Options::required(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_texts.emplace_back(), description)->required();
    return m_texts.back();
}

const std::vector<std::string>& Options::list(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_lists.emplace_back(), description);
    return m_lists.back();
}

const std::vector<std::string>& Options::repeated(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_lists.emplace_back(), description)->required()->allow_extra_args(false);
    return m_lists.back();
}

void Options::dataDirectory(const std::string& name, const std::string& description)
{
    m_command->add_option(name, *m_dataDirectory, description);
}

void Options::exclude(const std::string& one, const std::string& other)
{
    m_command->get_option(one)->excludes(m_command->get_option(other));
}

int runTool(int argc, char** argv, std::span<const Command> commands)
{
    CLI::App app("Estimates the power of designs for Orvane devices.", "zelm");
    // Not in the help, which would end in an empty line if this option weren't the first.
    int barAfter = 500; // what is done by then needs no bar
    app.add_option("--progress-after", barAfter, "Milliseconds until a progress bar shows")->group("");
    app.set_help_flag("-h,--help", "Print this help message and exit");
    app.require_subcommand(1);
    app.set_version_flag("--version", ZELM_VERSION);
    app.fallthrough();
    std::string dataDirectory;
    Run run;
    app.add_option(
        "--datadir", dataDirectory,
        "Directory (or ':'-separated list) with powercfg/orvane/*.cfg; else QTA_DATADIR, else the shipped data");
    app.add_flag("-v,--verbose", run.verbose, "Say more: which data, every input, what was carried where");
    std::deque<Options> options;
    Action action;
    for (const Command& command : commands) {
        CLI::App* subcommand = app.add_subcommand(command.name, command.description);
        subcommand->callback(
            [&action, then = command.declare(options.emplace_back(*subcommand, dataDirectory))] { action = then; });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int code = app.exit(error);
        return code == 0 ? kSuccess : kUserError;
    }

    run.barAfter = std::chrono::milliseconds(barAfter);
    const std::string origin = chooseDataDirectory(dataDirectory);
    if (run.verbose)
        fmt::print(stderr, "{}\n", origin);
    const int code = action(run);
    if (std::fwrite(run.out.data(), 1, run.out.size(), stdout) != run.out.size() || std::fflush(stdout) != 0)
        throw Error("standard output cannot be written");
    return code;
}

} // namespace zelm::host
