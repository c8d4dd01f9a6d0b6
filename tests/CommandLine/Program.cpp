// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Program.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace {

struct Channel {
    int reader = -1;
    int writer = -1;
};

Channel makePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    return {ends[0], ends[1]};
}

Channel makeTerminal() {
    Channel channel;
    winsize size{.ws_row = 24, .ws_col = 70, .ws_xpixel = 0, .ws_ypixel = 0};
    if (::openpty(&channel.reader, &channel.writer, nullptr, nullptr, &size) != 0)
        throw std::system_error(errno, std::generic_category(), "openpty");
    ::fcntl(channel.reader, F_SETFD, FD_CLOEXEC);
    ::fcntl(channel.writer, F_SETFD, FD_CLOEXEC);
    return channel;
}

/// Reads what is there; false at the end. A terminal ends with an error.
bool readSome(int descriptor, std::string& text) {
    char buffer[65536];
    const ssize_t length = ::read(descriptor, buffer, sizeof buffer);
    if (length > 0)
        text.append(buffer, static_cast<std::size_t>(length));
    return length > 0 || (length < 0 && errno == EINTR);
}

/// A pipe that holds one line: whoever writes the next waits until this one was read.
Channel makeOneLinePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_DIRECT) != 0 || ::fcntl(ends[1], F_SETPIPE_SZ, ::getpagesize()) < 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    return {ends[0], ends[1]};
}

/// The line in such a pipe, which stays there.
std::string lineIn(int pipe) {
    const Channel copy = makePipe();
    std::string line;
    if (::tee(pipe, copy.writer, 65536, 0) > 0)
        readSome(copy.reader, line);
    ::close(copy.reader);
    ::close(copy.writer);
    return line;
}

/// Whether the process has the signal still before it.
bool isPending(pid_t process, int signal) {
    std::ifstream status{"/proc/" + std::to_string(process) + "/status"};
    bool hasEnded = false;
    for (std::string line; std::getline(status, line);) {
        hasEnded = hasEnded || line.starts_with("State:\tZ");
        if (line.starts_with("ShdPnd:"))
            return !hasEnded && (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
    }
    return false;
}

/// Returns when the program has acted upon the signal. It takes one after the other, and nothing follows from
/// the second.
void deliver(pid_t process, int signal) {
    for (const int each : {signal, SIGUSR1}) {
        ::kill(process, each);
        while (isPending(process, each))
            ::usleep(1000);
    }
}

std::size_t countOf(std::string_view part, std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// Becomes the leader of a session at the terminal and lets a child go on in its foreground. Never returns
/// here: after the child it tells whether the terminal shows what is typed, and ends as the child did.
void actAsShell(int terminal, int report) {
    ::setsid();
    ::ioctl(terminal, TIOCSCTTY, 0);
    const pid_t child = ::fork();
    if (child == 0)
        return;
    std::signal(SIGINT, SIG_IGN);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    termios state{};
    const char echoes = ::tcgetattr(terminal, &state) == 0 && (state.c_lflag & ECHO) != 0 ? 'y' : 'n';
    const bool told = ::write(report, &echoes, 1) == 1;
    ::_exit(!told ? 124 : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

/// Root may write anywhere, and tests may run as root: the program is to meet the limits that others meet.
void renouncePrivileges() {
    for (const unsigned long capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER})
        ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
}

} // namespace

std::vector<std::string> Ran::lines() const {
    std::vector<std::string> result;
    std::istringstream stream{out};
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

std::vector<nlohmann::json> Ran::json() const {
    std::vector<nlohmann::json> result;
    for (const std::string& line : lines())
        result.push_back(nlohmann::json::parse(line));
    return result;
}

nlohmann::json Ran::result() const {
    const std::vector<nlohmann::json> all = json();
    if (all.empty())
        throw std::runtime_error("There is no output; standard error: " + err);
    return all.back().at("result");
}

Program::Program() = default;

std::filesystem::path Program::settingsFile() const {
    return m_home / "config/app.roamly.Roamly/settings.ini";
}

Ran Program::run(const std::vector<std::string>& words, ErrorTo errorTo) {
    return run(words, Situation{.errorTo = errorTo});
}

Ran Program::runTyping(const std::vector<std::string>& words, std::string_view typed) {
    return run(words, Situation{.errorTo = ErrorTo::Terminal, .typed = typed});
}

Ran Program::converse(const std::vector<std::string>& words, const std::vector<Typing>& typings) {
    return run(words, Situation{.errorTo = ErrorTo::Terminal, .typings = typings});
}

Ran Program::interrupt(const std::vector<std::string>& words, std::string_view sign,
                       const std::vector<int>& signals, int times, std::chrono::milliseconds pause) {
    return run(words, Situation{.sign = sign, .times = times, .meanwhile = [&] {
                                    for (const int signal : signals) {
                                        deliver(m_child, signal);
                                        std::this_thread::sleep_for(pause);
                                    }
                                }});
}

Ran Program::runWhile(const std::vector<std::string>& words, std::string_view sign,
                      const std::function<void()>& meanwhile) {
    return run(words, Situation{.sign = sign, .meanwhile = meanwhile});
}

std::filesystem::path Program::cacheFolder() const {
    return m_home / ".cache/app.roamly.Roamly";
}

Ran Program::run(const std::vector<std::string>& words, const Situation& situation) {
    const Channel out = situation.meanwhile ? makeOneLinePipe() : makePipe();
    const Channel report = makePipe();
    const Channel err = situation.errorTo == ErrorTo::Terminal ? makeTerminal() : makePipe();
    const std::string config = (m_home / "config").string();
    const std::string home = m_home.path().string();

    std::vector<char*> arguments;
    std::string program = m_program;
    std::vector<std::string> copies = words;
    arguments.push_back(program.data());
    for (std::string& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        renouncePrivileges();
        // A test run in the background may ignore these, and children would inherit it.
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        ::setenv("HOME", home.c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
        ::setenv("TERM", "xterm", 1);
        // It must manage without a display and without being told how.
        for (const char* variable :
             {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            ::unsetenv(variable);
        for (const auto& [name, value] : m_environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        const int file = ::memfd_create("input", MFD_CLOEXEC);
        if (::write(file, m_input.data(), m_input.size()) < 0 || ::lseek(file, 0, SEEK_SET) != 0)
            ::_exit(125);
        const bool isTyped = !situation.typed.empty() || !situation.typings.empty();
        const int input = isTyped ? err.writer : file;
        if (::chdir(m_folder.path().c_str()) != 0 || ::dup2(input, STDIN_FILENO) < 0 ||
            ::dup2(out.writer, STDOUT_FILENO) < 0 || ::dup2(err.writer, STDERR_FILENO) < 0)
            ::_exit(126);
        if (!situation.typings.empty())
            actAsShell(err.writer, report.writer);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(out.writer);
    ::close(err.writer);
    ::close(report.writer);

    if (!situation.typed.empty() && ::write(err.reader, situation.typed.data(), situation.typed.size()) < 0)
        throw std::system_error(errno, std::generic_category(), "typing");

    Ran ran;
    m_child = child;
    bool isOver = !situation.meanwhile;
    auto typing = situation.typings.begin();
    std::size_t answered = 0;
    pollfd inputs[2] = {{out.reader, POLLIN, 0}, {err.reader, POLLIN, 0}};
    while (inputs[0].fd >= 0 || inputs[1].fd >= 0) {
        if (::poll(inputs, 2, -1) < 0 && errno != EINTR)
            break;
        if (inputs[0].revents != 0 && !isOver &&
            countOf(situation.sign, ran.out + lineIn(out.reader)) >=
                static_cast<std::size_t>(situation.times)) {
            isOver = true;
            situation.meanwhile();
        }
        if (inputs[0].revents != 0 && !readSome(out.reader, ran.out))
            inputs[0].fd = -1;
        if (inputs[1].revents != 0 && !readSome(err.reader, ran.err))
            inputs[1].fd = -1;
        while (typing != situation.typings.end() &&
               ran.err.find(typing->after, answered) != std::string::npos) {
            answered = ran.err.find(typing->after, answered) + typing->after.size();
            if (::write(err.reader, typing->typed.data(), typing->typed.size()) < 0)
                throw std::system_error(errno, std::generic_category(), "typing");
            ++typing;
        }
    }
    std::string echoes;
    readSome(report.reader, echoes);
    ran.terminalEchoes = echoes == "y";
    ::close(report.reader);
    ::close(out.reader);
    ::close(err.reader);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    ran.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ran;
}
