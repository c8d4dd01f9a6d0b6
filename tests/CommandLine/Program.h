#pragma once

#include <Foundation/TemporaryFolder.h>

#include <nlohmann/json.hpp>
#include <sys/types.h>

#include <filesystem>
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

    /// Starts it, sends the signals once `sign` stands in its standard output, and waits for its end.
    Ran interrupt(const std::vector<std::string>& words, std::string_view sign,
                  const std::vector<int>& signals);

private:
    struct Situation {
        ErrorTo errorTo = ErrorTo::Pipe;
        std::string_view typed = {};
        std::string_view sign = {};
        std::vector<int> signals = {};
    };
    Ran run(const std::vector<std::string>& words, const Situation& situation);

    Foundation::Testing::TemporaryFolder m_folder;
    Foundation::Testing::TemporaryFolder m_home;
    std::string m_program = ROAMLY_PROGRAM;
    std::map<std::string, std::string> m_environment;
    std::string m_input;
};
