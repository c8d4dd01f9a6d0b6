// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Support/TemporaryFolder.h>

#include <nlohmann/json.hpp>
#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// One run of the program that has ended.
struct Ran {
    /// The exit status; minus the signal's number when one ended it.
    int status = 0;
    std::string out;
    std::string err;
    /// After a conversation: whether its terminal shows again what is typed.
    bool terminalEchoes = false;

    [[nodiscard]] std::vector<std::string> lines() const;
    /// Each line of standard output as JSON. Throws when one is not.
    [[nodiscard]] std::vector<nlohmann::json> json() const;
    /// The member "result" of the last line.
    [[nodiscard]] nlohmann::json result() const;
};

/// The built program, run in a folder of its own with settings, caches and temporary files of its own.
class Program {
public:
    /// Where its standard error goes.
    enum class ErrorTo { Pipe, Terminal };

    Program();

    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder.path(); }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return m_folder / name; }
    [[nodiscard]] std::filesystem::path settingsFile() const;

    /// Another file to run than the one that was built.
    void setProgram(const std::filesystem::path& file) { m_program = file.string(); }
    /// Set for every run from now on.
    void setEnvironment(const std::string& name, const std::string& value) { m_environment[name] = value; }
    /// What every run from now on reads from its standard input.
    void setInput(const std::string& input) { m_input = input; }

    /// Runs it to its end with the words after its name.
    Ran run(const std::vector<std::string>& words, ErrorTo errorTo = ErrorTo::Pipe);

    /// Runs it at a terminal where somebody has typed already.
    Ran runTyping(const std::vector<std::string>& words, std::string_view typed);

    /// What somebody types when a text has come up. "\x03" is Ctrl-C.
    struct Typing {
        std::string after;
        std::string typed;
    };
    /// Runs it as a shell does, at a terminal where somebody reads and types.
    Ran converse(const std::vector<std::string>& words, const std::vector<Typing>& typings);

    /// Starts it, sends the signals, a pause apart, when `sign` comes in its standard output for the
    /// `times`-th time, and waits for its end. Meanwhile it waits with the next line that it has to say, so
    /// it always has them in time.
    Ran interrupt(const std::vector<std::string>& words, std::string_view sign,
                  const std::vector<int>& signals, int times = 1, std::chrono::milliseconds pause = {});

    /// Starts it, does something when `sign` comes in its standard output, and waits for its end. Meanwhile
    /// it waits with the next line that it has to say.
    Ran runWhile(const std::vector<std::string>& words, std::string_view sign,
                 const std::function<void()>& meanwhile);

    /// Where it keeps what can be had again.
    [[nodiscard]] std::filesystem::path cacheFolder() const;

private:
    struct Situation {
        ErrorTo errorTo = ErrorTo::Pipe;
        std::string_view typed = {};
        std::vector<Typing> typings = {};
        std::string_view sign = {};
        int times = 1;
        std::function<void()> meanwhile = {};
    };
    Ran run(const std::vector<std::string>& words, const Situation& situation);

    TemporaryFolder m_folder;
    TemporaryFolder m_home;
    std::string m_program = ROAMLY_PROGRAM;
    pid_t m_child = 0;
    std::map<std::string, std::string> m_environment;
    std::string m_input;
};
