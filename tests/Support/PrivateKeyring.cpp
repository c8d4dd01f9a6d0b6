// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Support/PrivateKeyring.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace {

struct Child {
    pid_t pid = -1;
    /// Its standard output.
    int output = -1;
};

/// Starts a program with `input` on its standard input.
Child start(const std::vector<std::string>& command, const std::string& input) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::dup2(in[0], STDIN_FILENO);
        ::dup2(out[1], STDOUT_FILENO);
        std::vector<char*> arguments;
        for (const std::string& argument : command)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    if (::write(in[1], input.data(), input.size()) != static_cast<ssize_t>(input.size()))
        throw std::runtime_error("the program does not read");
    ::close(in[1]);
    return {pid, out[0]};
}

std::string firstLine(int descriptor) {
    std::string line;
    char c = 0;
    while (::read(descriptor, &c, 1) == 1 && c != '\n')
        line += c;
    return line;
}

void end(pid_t pid) {
    if (pid > 0) {
        ::kill(pid, SIGTERM);
        ::waitpid(pid, nullptr, 0);
    }
}

} // namespace

bool PrivateKeyring::isPossible() {
    return std::system("command -v dbus-daemon gnome-keyring-daemon >/dev/null 2>&1") == 0;
}

PrivateKeyring::PrivateKeyring(Daemon daemon) {
    std::string pattern = (std::filesystem::temp_directory_path() / "roamly-keyring-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_folder = pattern;
    for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
        ::setenv(name, m_folder.c_str(), 1);

    // Without service folders nothing is started on demand: who is not here is absent.
    const std::filesystem::path configuration = m_folder / "bus.conf";
    std::ofstream{configuration}
        << R"(<busconfig><type>session</type><listen>unix:dir=)" << m_folder.string()
        << R"(</listen><policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";
    const Child bus =
        start({"dbus-daemon", "--config-file=" + configuration.string(), "--nofork", "--print-address"}, "");
    m_bus = bus.pid;
    ::setenv("DBUS_SESSION_BUS_ADDRESS", firstLine(bus.output).c_str(), 1);
    if (daemon == Daemon::Running) {
        const Child keyring =
            start({"gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"}, "password");
        m_daemon = keyring.pid;
        // It says where it can be reached once it can be.
        (void)firstLine(keyring.output);
    }
}

PrivateKeyring::~PrivateKeyring() {
    end(m_daemon);
    end(m_bus);
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}
