#include "host/commands/Manual.h"

#include "host/base/Text.h"
#include "host/blocks/Block.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

namespace zelm::host {

namespace {

std::vector<std::string> spellings(const std::vector<ManualEntry>& entries)
{
    std::vector<std::string> all;
    for (const ManualEntry& entry : entries) {
        if (!entry.isArgument) {
            for (std::string& name : split(entry.name, ','))
                all.push_back(std::move(name));
        }
    }
    return all;
}

std::vector<std::string> blockNames()
{
    std::vector<std::string> names;
    for (const Block& block : blocks())
        names.emplace_back(block.name);
    return names;
}

bool takesBlock(const ManualCommand& command)
{
    return !command.entries.empty() &&
           std::any_of(command.entries.begin(), command.entries.end(),
                       [](const ManualEntry& entry) { return entry.isArgument && entry.name == "block"; });
}

std::vector<std::string> namesOf(const std::vector<ManualCommand>& commands)
{
    std::vector<std::string> names;
    for (const ManualCommand& command : commands)
        names.push_back(command.name);
    return names;
}

// All commands, each in front of its own subcommands, which have its name before theirs.
std::vector<ManualCommand> allOf(const std::vector<ManualCommand>& commands, const std::string& before = "")
{
    std::vector<ManualCommand> all;
    for (ManualCommand command : commands) {
        command.name = before + command.name;
        all.push_back(command);
        for (ManualCommand& inner : allOf(command.commands, command.name + " "))
            all.push_back(std::move(inner));
    }
    return all;
}

// Options complete behind a dash, subcommands behind their command, blocks where a command takes one, files elsewhere.
std::string bashCompletion(const Manual& manual)
{
    std::string commands;
    std::string options;
    std::string within;
    std::vector<std::string> ofBlocks;
    for (const ManualCommand& command : allOf(manual.commands)) {
        commands += fmt::format("{}'{}'", commands.empty() ? "" : "|", command.name);
        if (!command.commands.empty())
            within +=
                fmt::format("        '{}') words='{}' ;;\n", command.name, fmt::join(namesOf(command.commands), " "));
        else
            options += fmt::format("        '{}') options+=' {}' ;;\n", command.name,
                                   fmt::join(spellings(command.entries), " "));
        if (takesBlock(command))
            ofBlocks.push_back(command.name);
    }
    return fmt::format(R"(# Completes the words of zelm in bash. Printed by zelm itself; do not edit.
_zelm() {{
    local current=${{COMP_WORDS[COMP_CWORD]}} word command= options='{0}' words=
    for word in "${{COMP_WORDS[@]:1:COMP_CWORD-1}}"; do
        case "$command${{command:+ }}$word" in
        {1}) command+="${{command:+ }}$word" ;;
        esac
    done
    case $command in
{2}    esac
    case $command in
        '') words='{3}' ;;
{6}        {4}) words='{5}' ;;
    esac
    [[ $current != -* ]] || words=$options
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}}
complete -o default -F _zelm zelm
)",
                       fmt::join(spellings(manual.entries), " "), commands, options,
                       fmt::join(namesOf(manual.commands), " "), fmt::join(ofBlocks, "|"), fmt::join(blockNames(), " "),
                       within);
}

// Inside quotes and brackets of the shell's descriptions.
std::string zshText(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '\'')
            escaped += "'\\''";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            escaped += std::string("\\") + c;
        else
            escaped += c;
    }
    return escaped;
}

std::string zshOptions(const std::vector<ManualEntry>& entries, const std::string& indent)
{
    std::string lines;
    for (const ManualEntry& entry : entries) {
        if (entry.isArgument)
            continue;
        for (const std::string& name : split(entry.name, ','))
            lines += fmt::format("{}'{}[{}]{}' \\\n", indent, name, zshText(entry.description),
                                 !entry.takesValue ? ""
                                 : entry.takesFile ? ":file:_files"
                                                   : ":value: ");
    }
    return lines;
}

// What completes the words behind each command.
std::string zshCases(const std::vector<ManualCommand>& commands, const std::string& indent)
{
    std::string cases;
    for (const ManualCommand& command : commands) {
        cases += fmt::format("{}{})\n", indent, command.name);
        if (!command.commands.empty())
            cases += fmt::format("{0}  _arguments -C \\\n{0}    '1:command:({1})' \\\n{0}    "
                                 "'*::argument:->within'\n{0}  case $words[1] in\n{2}{0}  esac\n",
                                 indent, fmt::join(namesOf(command.commands), " "),
                                 zshCases(command.commands, indent + "  "));
        else
            cases += fmt::format(
                "{0}  _arguments \\\n{1}{0}    '*:{2}'\n", indent, zshOptions(command.entries, indent + "    "),
                takesBlock(command) ? fmt::format("block:({})", fmt::join(blockNames(), " ")) : "file:_files");
        cases += indent + "  ;;\n";
    }
    return cases;
}

std::string zshCompletion(const Manual& manual)
{
    std::string list;
    for (const ManualCommand& command : manual.commands)
        list += fmt::format("    '{}:{}'\n", command.name, zshText(command.description));
    return fmt::format(R"(#compdef zelm
# Completes the words of zelm in zsh. Printed by zelm itself; do not edit.
_zelm() {{
  local context state line
  typeset -A opt_args
  local -a commands
  commands=(
{0}  )
  _arguments -C \
{1}    '1:command:->command' \
    '*::argument:->argument'
  case $state in
  command) _describe command commands ;;
  argument)
    case $words[1] in
{2}    esac
    ;;
  esac
}}
_zelm "$@"
)",
                       list, zshOptions(manual.entries, "    "), zshCases(manual.commands, "    "));
}

// A backslash, a dash that is typed, and a line's first dot or quote mean something to the typesetter.
std::string manLine(const std::string& text)
{
    std::string escaped = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char c : text)
        escaped += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    return escaped;
}

std::string manEntries(const std::vector<ManualEntry>& entries)
{
    std::string text;
    for (const ManualEntry& entry : entries)
        text += fmt::format(".TP\n.B {}\n{}\n", manLine(fmt::format("{}", fmt::join(split(entry.name, ','), ", "))),
                            manLine(entry.description));
    return text;
}

std::string manPage(const Manual& manual)
{
    std::string text = fmt::format(".\\\" Printed by zelm itself; do not edit.\n.TH ZELM 1 \"\" \"zelm {}\"\n"
                                   ".SH NAME\nzelm \\- power of designs for Orvane devices\n"
                                   ".SH SYNOPSIS\n.B zelm\n.I command\n.RI [ options ]\n"
                                   ".SH DESCRIPTION\n{}\nA file to read may be \\-, which is standard input.\n"
                                   ".SH OPTIONS\n{}.SH COMMANDS\n",
                                   ZELM_VERSION, manLine(manual.description), manEntries(manual.entries));
    std::string examples;
    for (const ManualCommand& command : allOf(manual.commands)) {
        text += fmt::format(".SS {}\n{}\n{}", manLine(command.name), manLine(command.description),
                            manEntries(command.entries));
        examples += fmt::format(".TP\n{}\n.B {}\n", manLine(command.description), manLine(command.example));
    }
    return text + fmt::format(".SH EXAMPLES\n{}.SH EXIT STATUS\n{}\n"
                              ".SH ENVIRONMENT\n.TP\n.B QTA_DATADIR\nThe data directory, unless \\-\\-datadir names "
                              "one.\n.TP\n.B NO_COLOR\nIf set, no colours.\n",
                              examples, manLine(manual.exitCodes));
}

} // namespace

std::string manualText(const Manual& manual, const std::string& form)
{
    return form == "bash" ? bashCompletion(manual) : form == "zsh" ? zshCompletion(manual) : manPage(manual);
}

} // namespace zelm::host
