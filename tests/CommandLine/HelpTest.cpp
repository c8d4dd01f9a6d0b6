#include <Foundation/AtomicFile.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Help.h>
#include <Roamly/CommandLine/ProjectSettingKeys.h>
#include <Roamly/SettingsStore.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

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
    const std::string everything = CommandLine::overview() + CommandLine::groupHelp("inspect");
    for (const Command& command : commands())
        EXPECT_NE(everything.find(command.summary), std::string::npos) << command.name;
}

TEST(HelpTest, SettingsNamesEveryKeyAndItsDefault) {
    const std::string help = commandHelp(named("settings"));
    for (const Roamly::SettingKey& key : Roamly::settingKeys()) {
        EXPECT_NE(help.find(key.name), std::string::npos) << key.name;
        EXPECT_NE(help.find(key.text(Roamly::AppSettings{}).value_or("(none)")), std::string::npos)
            << key.name;
    }
}

TEST(HelpTest, SetNamesEveryKeyOfAProject) {
    const std::string help = commandHelp(named("set"));
    for (const CommandLine::ProjectSettingKey& key : CommandLine::projectSettingKeys())
        EXPECT_NE(help.find(key.name), std::string::npos) << key.name;
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

TEST(HelpTest, TheShellsCompletionKnowsEveryCommandAndOption) {
    const std::string script = Foundation::readFile(ROAMLY_COMPLETIONS);
    for (const Command& command : commands()) {
        const std::string_view word = command.name.substr(command.name.find(' ') + 1);
        EXPECT_NE(script.find(word), std::string::npos) << command.name;
        for (const CommandLine::Option& option : command.options)
            EXPECT_NE(script.find(option.name), std::string::npos) << command.name << " " << option.name;
    }
    for (const Roamly::SettingKey& key : Roamly::settingKeys())
        EXPECT_NE(script.find(key.name), std::string::npos) << key.name;
}
