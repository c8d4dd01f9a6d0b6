// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/BashCompletion.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Help.h>

#include <set>
#include <string_view>

namespace CommandLine {

namespace {

constexpr std::string_view head =
    R"(# Completion of roamly's commands, options and files for bash. Made by "roamly --bash-completion".

_roamly_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$word")
}

_roamly_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

_roamly_folders() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$word")
}

# Projects, and the folders on the way to them.
_roamly_projects() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -X '!*.roamly' -- "$word"; compgen -d -- "$word")
}

_roamly() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]-} position=$((COMP_CWORD - 1)) options
    COMPREPLY=()
)";

constexpr std::string_view foot = R"(}

complete -F _roamly roamly
)";

std::string joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (const std::string_view word : words)
        text += (text.empty() ? "" : " ") + std::string{word};
    return text;
}

/// What completes an argument of a name; nothing when only a person knows it.
std::string action(std::string_view name, const std::vector<std::string_view>& choices) {
    if (!choices.empty())
        return "_roamly_words \"" + joined(choices) + "\"";
    if (name == "PROJECT" || name == "FILE.roamly")
        return "_roamly_projects";
    if (name == "FOLDER")
        return "_roamly_folders";
    return name.starts_with("FILE") ? "_roamly_files" : ":";
}

std::string firstWord(std::string_view name) {
    return std::string{name.substr(0, name.find(' '))};
}

/// The words that may follow at the beginning, each once and in the order of the commands.
std::string beginnings(std::string_view group) {
    std::vector<std::string_view> words;
    std::set<std::string_view> known;
    for (const Command& command : commands()) {
        std::string_view name = command.name;
        if (!group.empty()) {
            if (!name.starts_with(std::string{group} + " "))
                continue;
            name.remove_prefix(group.size() + 1);
        }
        const std::string_view word = name.substr(0, name.find(' '));
        if (known.insert(word).second)
            words.push_back(word);
    }
    return joined(words) + (group.empty() ? " --help --licences --version" : " --help");
}

/// What else may follow where the group's name is a command too.
std::string ownChoices(std::string_view group) {
    for (const Command& command : commands()) {
        if (command.name == group && !command.positionals.empty())
            return " " + joined(command.positionals[0].choices);
    }
    return {};
}

std::string groupClause(std::string_view group) {
    const std::string name{group};
    std::string members;
    for (const Command& command : commands()) {
        if (command.name.starts_with(name + " "))
            members += (members.empty() ? "" : "|") + std::string{command.name.substr(name.size() + 1)};
    }
    return "    if [[ $command == " + name + " ]]; then\n" +
           "        if ((COMP_CWORD == 2)); then _roamly_words \"" + beginnings(group) + ownChoices(group) +
           "\"; return; fi\n" + "        case ${COMP_WORDS[2]} in\n        " + members + ") command=\"" +
           name + " ${COMP_WORDS[2]}\" position=$((COMP_CWORD - 2)) ;;\n        esac\n    fi\n";
}

/// The branch of one command: values of its options, its options, its positionals.
std::string commandClause(const Command& command) {
    std::string values;
    std::string names;
    const auto add = [&](const Option& option) {
        names += (names.empty() ? "" : " ") + std::string{option.name};
        if (option.value.empty())
            return;
        values += "        " + std::string{option.name};
        if (option.shortName)
            values += std::string{" | -"} + option.shortName;
        values += ") " + action(option.value, option.choices) + "; return ;;\n";
    };
    for (const Option& option : command.options)
        add(option);
    for (const Option& option : commonOptions())
        add(option);

    std::string text = "    \"" + std::string{command.name} + "\")\n";
    if (!values.empty())
        text += "        case $previous in\n" + values + "        esac\n";
    text += "        options=\"" + names + "\"\n";
    text += "        if [[ $word == -* ]]; then _roamly_words \"$options\"; return; fi\n";
    text += "        case $position in\n";
    for (std::size_t index = 0; index < command.positionals.size(); ++index) {
        const Positional& positional = command.positionals[index];
        text += "        " + (positional.isRepeated ? std::string{"*"} : std::to_string(index + 1)) + ") " +
                action(positional.name, positional.choices) + " ;;\n";
    }
    return text + "        esac\n        ;;\n";
}

} // namespace

std::string bashCompletion() {
    std::string text{head};
    text += "    if ((COMP_CWORD == 1)); then _roamly_words \"" + beginnings({}) + "\"; return; fi\n";
    std::set<std::string> groups;
    for (const Command& command : commands()) {
        const std::string group = firstWord(command.name);
        if (group != command.name && groups.insert(group).second)
            text += groupClause(group);
    }
    text += "    case $command in\n";
    for (const Command& command : commands())
        text += commandClause(command);
    text += "    esac\n";
    return text + std::string{foot};
}

} // namespace CommandLine
