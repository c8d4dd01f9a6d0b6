#include <Foundation/Cancellation.h>
#include <Roamly/CommandLine/Prompt.h>

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace CommandLine {

bool canAsk() {
    return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

bool askYesNo(std::string_view question, const std::stop_token& stop) {
    std::fputs((std::string{question} + " [y/N] ").c_str(), stderr);
    // Waits in short turns, so that Ctrl-C is heard.
    constexpr int turnMilliseconds = 50;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (::poll(&input, 1, turnMilliseconds) <= 0)
        Foundation::throwIfStopped(stop);
    char answer[64];
    const ssize_t length = ::read(STDIN_FILENO, answer, sizeof answer);
    return length > 0 && (answer[0] == 'y' || answer[0] == 'Y');
}

} // namespace CommandLine
