// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/CommandLine/BashCompletion.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Help.h>
#include <Roamly/CommandLine/ManualPage.h>
#include <Roamly/Document/SettingsTable.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

using CommandLine::Command;
using CommandLine::commandHelp;
using CommandLine::commands;

namespace {

const Command& named(std::string_view name) {
    for (const Command& command : commands()) {
        if (command.name == name)
            return command;
    }
    throw std::out_of_range("no such command");
}

/// What a program of this machine prints.
std::string outputOf(const std::vector<std::string>& words) {
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category());
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t length; (length = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(length));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return text;
}

/// The words of a text with one blank between them.
std::string onOneLine(const std::string& text) {
    std::istringstream words{text};
    std::string line;
    for (std::string word; words >> word;)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

} // namespace

TEST(HelpTest, EveryCommandHasANameOfItsOwnAndEverythingThatHelpShows) {
    std::set<std::string_view> names;
    for (const Command& command : commands()) {
        EXPECT_TRUE(names.insert(command.name).second) << command.name;
        EXPECT_FALSE(command.summary.empty()) << command.name;
        EXPECT_FALSE(command.usages.empty()) << command.name;
        EXPECT_FALSE(command.examples.empty()) << command.name;
        EXPECT_TRUE(command.run) << command.name;
        for (const std::string_view example : command.examples)
            EXPECT_TRUE(example.starts_with("roamly " + std::string{command.name})) << example;
    }
}

TEST(HelpTest, ACommandsHelpNamesAllItsArgumentsAndOptions) {
    for (const Command& command : commands()) {
        const std::string help = commandHelp(command);
        for (const CommandLine::Positional& positional : command.positionals)
            EXPECT_NE(help.find(positional.name), std::string::npos) << command.name;
        for (const CommandLine::Option& option : command.options)
            EXPECT_NE(help.find(option.name), std::string::npos) << command.name;
        EXPECT_NE(help.find("--json"), std::string::npos) << command.name;
    }
}

TEST(HelpTest, TheOverviewListsEveryCommandAndTheGroupsTheirMembers) {
    const std::string everything =
        CommandLine::overview() + CommandLine::groupHelp("inspect") + commandHelp(named("settings"));
    for (const Command& command : commands())
        EXPECT_NE(everything.find(command.summary), std::string::npos) << command.name;
}

TEST(HelpTest, SettingsTellsOfEveryOneItsDefaultAndWhatItTakes) {
    const std::string help = onOneLine(commandHelp(named("settings")));
    for (const Document::Setting& setting : Document::settingsTable()) {
        const std::string line = std::string{setting.user.name} + " " +
                                 setting.user.text(Document::AppSettings{}).value_or("(none)") + " " +
                                 std::string{setting.accepts} + ": " + std::string{setting.summary};
        EXPECT_NE(help.find(line), std::string::npos) << line;
    }
}

TEST(HelpTest, SetTellsOfEverySettingThatAProjectMayHave) {
    const std::string help = onOneLine(commandHelp(named("set")));
    for (const Document::Setting& setting : Document::settingsTable()) {
        const std::string meaning = " " + std::string{setting.accepts} + ": " + std::string{setting.summary};
        if (setting.project) {
            EXPECT_NE(help.find(std::string{setting.project->name} + meaning), std::string::npos)
                << setting.project->name;
        } else {
            EXPECT_EQ(help.find(setting.user.name), std::string::npos) << setting.user.name;
        }
    }
}

TEST(HelpTest, ColumnsAreAlignedAndALongTextInTheMiddlePushesTheRestDown) {
    EXPECT_EQ(CommandLine::columnText(
                  {{"a", "1", "first"}, {"long", "a text as long as this", "second"}, {"b", "…", "third"}}),
              "  a     1  first\n"
              "  long  a text as long as this\n"
              "           second\n"
              "  b     …  third");
}

TEST(HelpTest, TheLastColumnIsWrappedBetweenWords) {
    std::string words;
    for (int i = 0; i < 40; ++i)
        words += (i == 0 ? "" : " ") + std::string("word");
    const std::string text = CommandLine::columnText({{"name", words}});
    EXPECT_EQ(onOneLine(text), "name " + words);
    std::istringstream lines{text};
    std::string line;
    for (bool isFirst = true; std::getline(lines, line); isFirst = false) {
        EXPECT_LT(line.size(), 100U);
        EXPECT_EQ(line.find("word"), 8U);
        EXPECT_EQ(line.starts_with("  name  "), isFirst);
    }
}

TEST(HelpTest, LinesFitATerminalOfAHundredColumns) {
    for (const Command& command : commands()) {
        std::istringstream lines{commandHelp(command)};
        for (std::string line; std::getline(lines, line);) {
            const auto columns =
                std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; });
            EXPECT_LE(columns, 100) << line;
        }
    }
}

TEST(HelpTest, TheManualPageKnowsEveryCommandAndOption) {
    const std::string page = CommandLine::manualPage();
    for (const Command& command : commands()) {
        EXPECT_NE(page.find(CommandLine::sentence(command.summary)), std::string::npos) << command.name;
        for (const CommandLine::Option& option : command.options)
            EXPECT_NE(page.find("\\-\\-" + std::string{option.name.substr(2)}), std::string::npos)
                << option.name;
    }
}

TEST(HelpTest, TheShellCompletesCommandsOptionsAndTheirWords) {
    const TemporaryFolder folder;
    Foundation::writeFileAtomically(folder / "completion", CommandLine::bashCompletion());
    std::filesystem::create_directory(folder / "trip");
    Foundation::writeFileAtomically(folder / "a.roamly", "");
    Foundation::writeFileAtomically(folder / "a.txt", "");
    // What bash would offer after the words.
    const auto offered = [&](const std::string& words) {
        const std::string script =
            "cd " + folder.path().string() + " && . ./completion && compopt() { :; } && COMP_WORDS=(" +
            words + ") && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && _roamly && echo -n \"${COMPREPLY[*]}\"";
        return outputOf({"bash", "-c", script});
    };
    EXPECT_EQ(offered("roamly exp"), "export");
    EXPECT_EQ(offered("roamly inspect fr"), "frame");
    EXPECT_EQ(offered("roamly settings key s"), "set status");
    EXPECT_EQ(offered("roamly import ''"), "a.roamly trip");
    EXPECT_EQ(offered("roamly import a.roamly ''"), "trip");
    EXPECT_EQ(offered("roamly import a.roamly trip ''"), "trip");
    EXPECT_EQ(offered("roamly export a.roamly --co"), "--codec");
    EXPECT_EQ(offered("roamly export a.roamly --codec ''"), "h264 hevc");
    EXPECT_EQ(offered("roamly export a.roamly -o a"), "a.roamly a.txt");
    EXPECT_EQ(offered("roamly set a.roamly photo"), "photoDuration");
    EXPECT_EQ(offered("roamly settings ollamaB"), "ollamaBaseURL");
    EXPECT_EQ(offered("roamly inspect frame --si"), "--size");
    EXPECT_EQ(offered("roamly title a.roamly ''"), "");
}
