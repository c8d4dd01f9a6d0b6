// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Console.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/ProgressLine.h>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

namespace CommandLine {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using Foundation::JsonWriter;

constexpr Clock::duration reportInterval = 100ms;
constexpr std::string_view clearLine = "\r\x1b[K";

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void writeOut(std::string_view bytes) {
    if (!writeAll(STDOUT_FILENO, bytes))
        throw Failure(std::string{"The output can’t be written: "} + std::strerror(errno) + ".");
}

void writeError(std::string_view bytes) {
    // Nobody is left to tell when standard error is gone.
    static_cast<void>(writeAll(STDERR_FILENO, bytes));
}

bool terminalShowsBars() {
    const char* const terminal = std::getenv("TERM");
    return ::isatty(STDERR_FILENO) == 1 && !(terminal && std::string_view{terminal} == "dumb");
}

int terminalColumns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

std::string wrapped(std::string_view name, const Console::WriteJson& write) {
    JsonWriter json{JsonWriter::Layout::Compact};
    json.beginObject().key(name);
    write(json);
    json.endObject();
    return json.text() + "\n";
}

} // namespace

Console::Console(bool isJson)
    : m_isJson(isJson)
    , m_hasBar(!isJson && terminalShowsBars()) {}

Console::~Console() {
    clearBar();
}

void Console::result(const WriteJson& write) {
    clearBar();
    if (m_isJson) {
        writeOut(wrapped("result", write));
        return;
    }
    JsonWriter json{JsonWriter::Layout::Compact};
    write(json);
    writeOut(json.text() + "\n");
}

void Console::report(const WriteJson& write) {
    clearBar();
    if (m_isJson) {
        writeOut(wrapped("result", write));
        return;
    }
    if (::isatty(STDOUT_FILENO) == 1)
        return;
    Foundation::JsonWriter json{Foundation::JsonWriter::Layout::Compact};
    write(json);
    if (json.text() != "{}")
        writeOut(json.text() + "\n");
}

void Console::raw(std::string_view bytes) {
    clearBar();
    writeOut(bytes);
}

void Console::say(std::string_view sentence) {
    if (!m_isJson)
        warn(sentence);
}

void Console::warn(std::string_view sentence) {
    clearBar();
    writeError(std::string{sentence} + "\n");
}

void Console::progress(std::string_view label, double fraction, const WriteJson& record) {
    if (!m_isJson && !m_hasBar)
        return;
    const Clock::time_point now = Clock::now();
    // A new label, or a fraction that fell, begins a new piece of work.
    if (!m_began || label != m_label || fraction < m_lastFraction) {
        m_began = now;
        m_reported.reset();
        m_label = label;
    }
    m_lastFraction = fraction;
    if (m_reported && fraction < 1 && now - *m_reported < reportInterval)
        return;
    m_reported = now;
    if (m_isJson)
        writeOut(wrapped("progress", record));
    else
        showBar(label, fraction, now);
}

void Console::showBar(std::string_view label, double fraction, Clock::time_point now) {
    // The last column stays free: some terminals wrap when it is written.
    writeError(std::string{clearLine} + progressLine(label, fraction, now - *m_began, terminalColumns() - 1));
    m_barIsShown = true;
}

void Console::clearBar() {
    if (m_barIsShown)
        writeError(clearLine);
    m_barIsShown = false;
}

void printFailure(std::string_view sentence) {
    writeError("roamly: " + std::string{sentence} + "\n");
}

} // namespace CommandLine
