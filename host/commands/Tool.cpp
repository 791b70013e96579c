// The one source that knows the command line's parser: its headers take seconds to compile.
#include "host/commands/Tool.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/blocks/DataDirectory.h"
#include "host/commands/Manual.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <sstream>
#include <streambuf>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zelm::host {

namespace {

// Not given at all is another matter.
const CLI::Validator kNamed(
    [](const std::string& name) {
        return name.empty() ? std::string("the name of the data directory is empty") : std::string();
    },
    "");

} // namespace

Options::Options(CLI::App& command, std::string& dataDirectory) : m_command(&command), m_dataDirectory(&dataDirectory)
{
}

const bool& Options::flag(const std::string& name, const std::string& description)
{
    m_command->add_flag(name, m_flags.emplace_back(false), description);
    return m_flags.back();
}

const std::string& Options::flagOf(const std::string& name, const std::vector<std::string>& words,
                                   const std::string& description)
{
    m_flagsOf.emplace_back(name, words);
    m_command->add_flag(name, m_texts.emplace_back(), description);
    return m_texts.back();
}

const std::optional<std::string>& Options::text(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_optionals.emplace_back(), description)->type_name("FILE");
    return m_optionals.back();
}

const std::optional<std::string>& Options::value(const std::string& name, const std::string& what,
                                                 const std::string& description)
{
    m_command->add_option(name, m_optionals.emplace_back(), description)->type_name(what);
    return m_optionals.back();
}

const unsigned& Options::count(const std::string& name, const std::string& description)
{
    constexpr unsigned most = 1024;
    m_command->add_option(name, m_counts.emplace_back(0), description)->check(CLI::Range(1u, most));
    return m_counts.back();
}

const std::string& Options::required(const std::string& name, const std::string& description)
{
    m_command->add_option(name, m_texts.emplace_back(), description)->required();
    return m_texts.back();
}

const std::string& Options::requiredValue(const std::string& name, const std::string& what,
                                          const std::string& description)
{
    m_command->add_option(name, m_texts.emplace_back(), description)->required()->type_name(what);
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
    m_command->add_option(name, *m_dataDirectory, description)->check(kNamed);
}

void Options::exclude(const std::string& one, const std::string& other)
{
    m_command->get_option(one)->excludes(m_command->get_option(other));
}

namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 all is well; 1 a budget is broken (estimate --check), a total grows too far (diff\n"
    "--fail-above), or a file isn't in form (format --check); 2 a mistake, told on standard error";

std::string footer(const std::string& example)
{
    return fmt::format("Example:\n  {}\n\n{}", example, kExitCodes);
}

std::vector<std::string> namesOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        if (!command->get_group().empty())
            names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> optionsOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

// What is wrong with a command line. The parser itself tells neither which word it doesn't know nor one like it.
std::string mistake(const CLI::App& app, const CLI::ParseError& error)
{
    const CLI::App* chosen = &app;
    std::string name;
    std::vector<std::string> known = optionsOf(app);
    while (!chosen->get_subcommands().empty()) {
        chosen = chosen->get_subcommands().front();
        name += (name.empty() ? "" : " ") + chosen->get_name();
        for (std::string& option : optionsOf(*chosen))
            known.push_back(std::move(option));
    }
    for (const std::string& word : app.remaining(true)) {
        if (word.size() > 1 && word.front() == '-') {
            const std::string option = word.substr(0, word.find('='));
            return fmt::format("there is no option {}{}", abbreviated(option), suggestion(option, known));
        }
        if (const std::vector<std::string> names = namesOf(*chosen); !names.empty())
            return fmt::format("there is no subcommand {}{}{}; there {} {}", name + (name.empty() ? "" : " "),
                               abbreviated(word), suggestion(word, names), names.size() > 1 ? "are" : "is",
                               orList(names));
        return fmt::format("{} takes no further argument: {}", name, abbreviated(word));
    }
    return abbreviated(error.what(), 300);
}

ManualEntry entryOf(const CLI::Option& option)
{
    ManualEntry entry;
    entry.name = option.get_name(false, true); // "-v,--verbose"
    entry.isArgument = option.get_positional();
    entry.takesValue = option.get_items_expected_max() > 0;
    entry.takesFile = option.get_type_name() == "FILE" || entry.name == "--datadir" || entry.name == "design" ||
                      entry.name == "directory" || entry.name == "old" || entry.name == "new";
    entry.description = option.get_description();
    return entry;
}

std::vector<ManualEntry> entriesOf(const CLI::App& app)
{
    std::vector<ManualEntry> entries;
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty())
            entries.push_back(entryOf(*option));
    }
    return entries;
}

std::vector<ManualCommand> commandsOf(const CLI::App& app, std::span<const Command> commands)
{
    std::vector<ManualCommand> all;
    for (const Command& command : commands) {
        const CLI::App& own = *app.get_subcommand(command.name);
        all.push_back({command.name, command.description, command.example, entriesOf(own), {}});
        if (command.commands)
            all.back().commands = commandsOf(own, command.commands());
    }
    return all;
}

// All that the help says, for other forms of it.
Manual manualOf(const CLI::App& app, std::span<const Command> commands)
{
    return {app.get_description(), kExitCodes, entriesOf(app), commandsOf(app, commands)};
}

// What the shell closed stays closed, but no file that the tool opens takes its place. And what ends other programs
// unheard, a reader that went away or a file that grew too large, is an error of the write.
void prepareProcess()
{
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(standard, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", standard == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

// Takes what the library says by itself, about data files that it can't read: the tool says so too, once and with the
// file's name, and its standard output is for reports alone.
class Silence final : public std::streambuf {
public:
    Silence() : m_out(std::cout.rdbuf(this)), m_err(std::cerr.rdbuf(this)) {}
    ~Silence() override
    {
        std::cout.rdbuf(m_out);
        std::cerr.rdbuf(m_err);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

protected:
    int_type overflow(int_type c) override
    {
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char*, std::streamsize count) override
    {
        return count;
    }

private:
    std::streambuf* m_out;
    std::streambuf* m_err;
};

// An error in printing doesn't hide a worse one, and a reader that has seen enough makes none.
int printed(const std::string& text, int code)
{
    if (writeAll(STDOUT_FILENO, text) || errno == EPIPE)
        return code;
    complain("standard output cannot be written");
    return code == kSuccess ? kUserError : code;
}

} // namespace

// Standard output takes no more.
class Unprinted final : public std::system_error {
public:
    explicit Unprinted(int error) : std::system_error(error, std::generic_category()) {}
};

// The command line, last word first as the parser wants it. A word behind a flag that may have one goes with it: the
// parser would take it for an argument.
std::vector<std::string> wordsOf(int argc, char** argv, const std::deque<Options>& options)
{
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const bool joins = std::any_of(options.begin(), options.end(), [&](const Options& command) {
            return std::any_of(command.flagsOf().begin(), command.flagsOf().end(), [&](const auto& flag) {
                return !words.empty() && words.back() == flag.first &&
                       std::find(flag.second.begin(), flag.second.end(), word) != flag.second.end();
            });
        });
        if (joins)
            words.back() += "=" + word;
        else
            words.push_back(word);
    }
    std::reverse(words.begin(), words.end());
    return words;
}

// What the command line may say: the subcommands' options, and the action of the one that is chosen.
struct CommandLine {
    std::string dataDirectory{};
    std::deque<Options> options{};
    Action action{};

    void add(CLI::App& app, std::span<const Command> commands)
    {
        for (const Command& command : commands) {
            CLI::App* subcommand = app.add_subcommand(command.name, command.description);
            subcommand->footer(footer(command.example));
            if (command.commands) {
                subcommand->require_subcommand(1);
                add(*subcommand, command.commands());
                continue;
            }
            subcommand->callback(
                [this, then = command.declare(options.emplace_back(*subcommand, dataDirectory))] { action = then; });
        }
    }
};

int parseAndRun(int argc, char** argv, std::span<const Command> commands)
{
    CLI::App app("Estimates the power of designs for Orvane devices.", "zelm");
    // Not in the help, which would end in an empty line if this option weren't the first.
    int barAfter = 500; // what is done by then needs no bar
    app.add_option("--progress-after", barAfter, "Milliseconds until a progress bar shows")->group("");
    app.set_help_flag("-h,--help", "Print this help message and exit");
    app.require_subcommand(1);
    app.set_version_flag("--version", ZELM_VERSION, "Print the version and exit");
    app.fallthrough();
    app.footer(footer("zelm estimate design.json"));
    CommandLine line;
    Run run;
    app.add_option(
           "--datadir", line.dataDirectory,
           "Directory (or ':'-separated list) with powercfg/orvane/*.cfg; else QTA_DATADIR, else the shipped data")
        ->check(kNamed);
    app.add_flag("-v,--verbose", run.verbose, "Say more: which data, every input, what was carried where");
    line.add(app, commands);
    // For the build, which installs what it prints.
    std::string form;
    CLI::App* manual =
        app.add_subcommand("manual", "Print the man page, or what completes words in a shell")->group("");
    manual->add_option("form", form, "man, bash or zsh")->required()->check(CLI::IsMember({"man", "bash", "zsh"}));
    try {
        app.parse(wordsOf(argc, argv, line.options));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            complain(mistake(app, error) + " (--help tells more)");
            return kUserError;
        }
        std::ostringstream out;
        app.exit(error, out, out); // a wish for help or version
        return printed(wrapped(out.str(), terminalColumns()), kSuccess);
    }
    if (manual->parsed())
        return printed(manualText(manualOf(app, commands), form), kSuccess);

    run.print = [](std::string_view text) {
        if (!writeAll(STDOUT_FILENO, text))
            throw Unprinted(errno);
    };
    run.barAfter = std::chrono::milliseconds(barAfter);
    TextTable::fitTo(terminalColumns());
    const std::string origin = chooseDataDirectory(line.dataDirectory);
    if (run.verbose)
        say(origin);
    const int code = line.action(run);
    return printed(run.out, code);
}

Said runCommand(const std::vector<std::string>& words, std::span<const Command> commands)
{
    CLI::App app("", "zelm");
    app.require_subcommand(1);
    CommandLine line;
    line.add(app, commands);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // last word first
    } catch (const CLI::ParseError& error) {
        throw Error(mistake(app, error));
    }
    Said said;
    const HeardComplaints heard(said.complaints);
    Run run;
    run.barAfter = std::chrono::years(1);
    run.print = [&](std::string_view text) { said.out += text; };
    said.code = line.action(run);
    said.out += run.out;
    return said;
}

int runTool(int argc, char** argv, std::span<const Command> commands)
{
    prepareProcess();
    const Silence silence;
    try {
        return parseAndRun(argc, argv, commands);
    } catch (const Error& error) {
        complain(error.what());
    } catch (const Unprinted& error) {
        if (error.code().value() == EPIPE)
            return kSuccess; // a reader that has seen enough
        complain("standard output cannot be written");
    } catch (const std::bad_alloc&) {
        complain("not enough memory for this run");
    } catch (const std::exception& error) {
        complain(fmt::format("an error inside the tool, please report it: {}", error.what()));
    }
    return kUserError;
}

} // namespace zelm::host
