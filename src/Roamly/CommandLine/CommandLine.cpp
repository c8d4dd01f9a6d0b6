// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/VideoExporter.h>
#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/BashCompletion.h>
#include <Roamly/CommandLine/CommandLine.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Help.h>
#include <Roamly/CommandLine/Interruption.h>
#include <Roamly/CommandLine/ManualPage.h>
#include <Roamly/CommandLine/OpenWindow.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/CommandLine/Suggestion.h>
#include <Roamly/CommandLine/Version.h>
#include <Roamly/Document/Refusal.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

namespace CommandLine {

namespace {

/// The command that the words begin with, its longest name first: a group's member before a command of the
/// group's own name.
const Command* findCommand(const std::vector<std::string>& words) {
    const auto named = [](const std::string& name) -> const Command* {
        const auto found = std::find_if(commands().begin(), commands().end(),
                                        [&](const Command& command) { return command.name == name; });
        return found == commands().end() ? nullptr : &*found;
    };
    if (words.size() >= 2) {
        if (const Command* const member = named(words[0] + " " + words[1]))
            return member;
    }
    return named(words[0]);
}

bool isGroup(const std::string& word) {
    return std::any_of(commands().begin(), commands().end(),
                       [&](const Command& command) { return command.name.starts_with(word + " "); });
}

/// The first words of all commands, or the second words of a group's members.
std::vector<std::string_view> names(const std::string& group) {
    std::vector<std::string_view> result;
    for (const Command& command : commands()) {
        const std::size_t space = command.name.find(' ');
        if (group.empty())
            result.push_back(command.name.substr(0, space));
        else if (command.name.starts_with(group + " "))
            result.push_back(command.name.substr(space + 1));
    }
    return result;
}

int failMisuse(const std::string& sentence, const std::string& helpCall) {
    printFailure(sentence);
    printFailure("“" + helpCall + "” shows how it is used.");
    return ExitStatus::misuse;
}

int runCommand(const Command& command, const std::vector<std::string>& words) {
    const std::string name = "roamly " + std::string{command.name};
    if (asksForHelp(words)) {
        Console{false}.raw(commandHelp(command));
        return ExitStatus::done;
    }
    try {
        std::vector<Option> options = command.options;
        options.insert(options.end(), commonOptions().begin(), commonOptions().end());
        const Arguments arguments = Arguments::parse(words, options, command.positionals);
        const Interruption interruption{[] {
            Export::discardUnfinishedMovies();
            restoreTerminal();
        }};
        Console console{arguments.has("--json")};
        return command.run({arguments, console, interruption.token()});
    } catch (const UsageError& error) {
        return failMisuse(error.what(), name + " --help");
    } catch (const Document::Refusal& refusal) {
        if (isMisuse(refusal.kind()))
            return failMisuse(refusal.what(), name + " --help");
        printFailure(refusal.what());
        return ExitStatus::failed;
    } catch (const Foundation::Cancelled&) {
        printFailure("Interrupted.");
        return ExitStatus::interrupted;
    } catch (const Interrupted& error) {
        printFailure(error.what());
        return ExitStatus::interrupted;
    } catch (const std::bad_alloc&) {
        printFailure("There is not enough memory.");
        return ExitStatus::failed;
    } catch (const std::exception& error) {
        printFailure(error.what());
        return ExitStatus::failed;
    }
}

bool asksForLicences(const std::string& word) {
    return word == "--licences" || word == "--licenses";
}

/// The words are --version, --licences or both.
int tellVersion(const std::vector<std::string>& words) {
    const auto stranger = std::find_if(words.begin(), words.end(), [](const std::string& word) {
        return word != "--version" && !asksForLicences(word);
    });
    if (stranger != words.end())
        return failMisuse("There is no option " + *stranger + " beside " + words[0] + ".", "roamly --help");
    const bool withLicences = std::any_of(words.begin(), words.end(), asksForLicences);
    Console{false}.raw(withLicences ? versionText() + "\n" + licencesText() : versionText());
    return ExitStatus::done;
}

/// A project, also one that is not there, or photos: the window opens them or says why not.
bool namesFile(const std::string& word) {
    std::error_code ignored;
    return std::filesystem::path{word}.extension() == ".roamly" || std::filesystem::exists(word, ignored);
}

int openFiles(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        if (word.starts_with("-"))
            return failMisuse("There is no option " + word + " beside files to open.", "roamly --help");
        if (!namesFile(word))
            return failMisuse("There is no file “" + word + "”.", "roamly --help");
    }
    return openWindow(words);
}

/// What an argument that is no command was meant as.
int failUnknownCommand(const std::vector<std::string>& words) {
    const std::string& word = words[0];
    if (isGroup(word)) {
        if (words.size() == 1)
            return failMisuse("“roamly " + word + "” needs to know what.", "roamly " + word + " --help");
        return failMisuse("There is no “roamly " + word + " " + words[1] + "”." +
                              suggestion(words[1], names(word)),
                          "roamly " + word + " --help");
    }
    if (word.starts_with("-"))
        return failMisuse("There is no option " + word + ".", "roamly --help");
    return failMisuse("There is no command “" + word + "”." + suggestion(word, names({})), "roamly --help");
}

} // namespace

int run(int argumentCount, char* arguments[]) {
    const std::vector<std::string> words(arguments + std::min(1, argumentCount), arguments + argumentCount);
    try {
        if (words.empty())
            return openWindow({});
        if (words[0] == "--help" || words[0] == "-h") {
            Console{false}.raw(overview());
            return ExitStatus::done;
        }
        if (words[0] == "--version" || asksForLicences(words[0]))
            return tellVersion(words);
        if (words[0] == "--bash-completion") {
            Console{false}.raw(bashCompletion());
            return ExitStatus::done;
        }
        if (words[0] == "--manual-page") {
            Console{false}.raw(manualPage());
            return ExitStatus::done;
        }
        if (const Command* const command = findCommand(words)) {
            const auto nameWords = 1 + std::count(command->name.begin(), command->name.end(), ' ');
            return runCommand(*command, {words.begin() + nameWords, words.end()});
        }
        if (isGroup(words[0]) && words.size() > 1 && asksForHelp({words.begin() + 1, words.begin() + 2})) {
            Console{false}.raw(groupHelp(words[0]));
            return ExitStatus::done;
        }
        // As the menu entries of the desktop ask; they are for no one to type.
        if (words.size() == 1 && (words[0] == "--new" || words[0] == "--choose-and-play"))
            return openWindow(words);
        if (words[0] == "--")
            return openWindow({words.begin() + 1, words.end()});
        if (!isGroup(words[0]) && namesFile(words[0]))
            return openFiles(words);
        return failUnknownCommand(words);
    } catch (const std::exception& error) {
        printFailure(error.what());
        return ExitStatus::failed;
    }
}

} // namespace CommandLine
