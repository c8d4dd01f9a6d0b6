// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Foundation/Text.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Prompt.h>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <mutex>
#include <optional>
#include <string>

namespace CommandLine {

namespace {

/// Waits in short turns for something to read, so that Ctrl-C is heard.
void waitForInput(const std::stop_token& stop) {
    constexpr int turnMilliseconds = 50;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (::poll(&input, 1, turnMilliseconds) <= 0)
        Foundation::throwIfStopped(stop);
}

/// How the terminal was before it was told not to show what is typed.
struct Terminal {
    std::mutex mutex;
    std::optional<termios> before;
};

Terminal& terminal() {
    static Terminal instance;
    return instance;
}

/// The terminal does not show what is typed for as long as this lives.
class EchoOff {
public:
    EchoOff() {
        const std::lock_guard lock{terminal().mutex};
        termios before{};
        if (::tcgetattr(STDIN_FILENO, &before) != 0)
            return;
        terminal().before = before;
        termios silent = before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~EchoOff() {
        restoreTerminal();
        // The line end that was typed was not shown either.
        std::fputc('\n', stderr);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
};

/// Up to the end of the input, or of the line where a person types it.
std::string readInput(bool oneLine, const std::stop_token& stop) {
    constexpr std::size_t most = 65536;
    std::string text;
    std::array<char, 4096> buffer{};
    while (text.size() < most && !(oneLine && text.ends_with('\n'))) {
        waitForInput(stop);
        const ssize_t length = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (length <= 0)
            break;
        text.append(buffer.data(), static_cast<std::size_t>(length));
    }
    return text;
}

} // namespace

void restoreTerminal() {
    const std::lock_guard lock{terminal().mutex};
    if (terminal().before)
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &*terminal().before);
    terminal().before.reset();
}

bool canAsk() {
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

bool askYesNo(std::string_view question, const std::stop_token& stop) {
    std::fputs((std::string{question} + " [y/N] ").c_str(), stderr);
    const std::string answer = readInput(true, stop);
    return answer.starts_with('y') || answer.starts_with('Y');
}

std::string askSecret(std::string_view question, const std::stop_token& stop) {
    if (::isatty(STDIN_FILENO) != 1)
        return std::string{Foundation::trimmed(readInput(false, stop))};
    // In this order, for those who type as soon as they are asked.
    const EchoOff echoOff;
    std::fputs((std::string{question} + " ").c_str(), stderr);
    return std::string{Foundation::trimmed(readInput(true, stop))};
}

void confirm(const Document::PrivacyConfirmation& confirmation, bool saidYes, Console& console,
             const std::stop_token& stop) {
    if (saidYes)
        return;
    console.warn(std::string{confirmation.title} + "\n" + confirmation.message);
    if (!canAsk())
        throw Failure("Choosing " + std::string{displayName(confirmation.provider)} +
                      " must be confirmed with --yes.");
    if (!askYesNo(confirmation.agreement + "?", stop))
        throw Failure("Nothing was changed and nothing was sent.");
}

} // namespace CommandLine
