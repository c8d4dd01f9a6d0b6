#include "Program.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <system_error>

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

Ran Program::interrupt(const std::vector<std::string>& words, std::string_view sign,
                       const std::vector<int>& signals) {
    return run(words, Situation{.sign = sign, .signals = signals});
}

Ran Program::run(const std::vector<std::string>& words, const Situation& situation) {
    const Channel out = makePipe();
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
        for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
            ::unsetenv(variable);
        for (const auto& [name, value] : m_environment)
            ::setenv(name.c_str(), value.c_str(), 1);
        const int file = ::memfd_create("input", MFD_CLOEXEC);
        if (::write(file, m_input.data(), m_input.size()) < 0 || ::lseek(file, 0, SEEK_SET) != 0)
            ::_exit(125);
        const int input = situation.typed.empty() ? file : err.writer;
        if (::chdir(m_folder.path().c_str()) != 0 || ::dup2(input, STDIN_FILENO) < 0 ||
            ::dup2(out.writer, STDOUT_FILENO) < 0 || ::dup2(err.writer, STDERR_FILENO) < 0)
            ::_exit(126);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(out.writer);
    ::close(err.writer);

    if (!situation.typed.empty() && ::write(err.reader, situation.typed.data(), situation.typed.size()) < 0)
        throw std::system_error(errno, std::generic_category(), "typing");

    Ran ran;
    bool hasSignalled = situation.signals.empty();
    pollfd inputs[2] = {{out.reader, POLLIN, 0}, {err.reader, POLLIN, 0}};
    while (inputs[0].fd >= 0 || inputs[1].fd >= 0) {
        if (::poll(inputs, 2, -1) < 0 && errno != EINTR)
            break;
        if (inputs[0].revents != 0 && !readSome(out.reader, ran.out))
            inputs[0].fd = -1;
        if (inputs[1].revents != 0 && !readSome(err.reader, ran.err))
            inputs[1].fd = -1;
        if (!hasSignalled && ran.out.find(situation.sign) != std::string::npos) {
            hasSignalled = true;
            for (const int signal : situation.signals)
                ::kill(child, signal);
        }
    }
    ::close(out.reader);
    ::close(err.reader);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    ran.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return ran;
}
