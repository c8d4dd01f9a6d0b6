// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Console.h>
#include <Roamly/CommandLine/ExitStatus.h>
#include <Roamly/CommandLine/OpenWindow.h>

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace CommandLine {

namespace {

/// The last one is how Qt is told to do without a screen, or with another one.
bool hasDisplay() {
    const std::array names{"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};
    for (const char* const name : names) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return true;
    }
    return false;
}

/// Where the build and the installation put it, seen from this program's own place.
std::filesystem::path windowProgram() {
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    return self.parent_path().parent_path() / "lib" / "roamly" / "roamly-window";
}

} // namespace

int openWindow(const std::vector<std::string>& words) {
    if (!hasDisplay()) {
        printFailure(
            "There is no display to open a window on; “roamly --help” lists what works without one.");
        return ExitStatus::failed;
    }
    const std::string program = windowProgram().string();
    std::vector<std::string> all{program};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(program.c_str(), arguments.data());
    printFailure("The window cannot be opened, because “" + program + "” " +
                 (access(program.c_str(), F_OK) == 0 ? "cannot be run." : "is missing."));
    return ExitStatus::failed;
}

} // namespace CommandLine
