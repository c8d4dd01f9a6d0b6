// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Child.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>

namespace Bench {

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

} // namespace

Usage runChild(const std::vector<std::string>& command, bool isLoud) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");

    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no process");
    if (child == 0) {
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(nowhere, 0);
        dup2(pipe[1], 1);
        if (!isLoud)
            dup2(nowhere, 2);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(pipe[1]);
    Usage usage;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(pipe[0], buffer, sizeof buffer)) > 0;)
        usage.output.append(buffer, static_cast<std::size_t>(count));
    close(pipe[0]);
    int status = 0;
    rusage used{};
    wait4(child, &status, 0, &used);
    usage.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    usage.hasSucceeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    usage.cpuSeconds = seconds(used.ru_utime) + seconds(used.ru_stime);
    usage.peakBytes = std::int64_t{used.ru_maxrss} * 1024;
    return usage;
}

double cpuSecondsSoFar() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

std::int64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stoll(line.substr(6)) * 1024;
    }
    return 0;
}

void resetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

} // namespace Bench
