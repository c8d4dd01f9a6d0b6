// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/JsonWriter.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace CommandLine {

/// Where a command's words go: results as JSON to standard output, everything for people to standard error.
/// Used by one thread at a time.
class Console {
public:
    using WriteJson = std::function<void(Foundation::JsonWriter&)>;

    explicit Console(bool isJson);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// One line that is what the command was called for: the value itself, or with --json `{"result":…}`.
    void result(const WriteJson& write);
    /// What a command has to say to a program after it did its work: `{"result":…}` with --json, otherwise
    /// the value itself where a program reads standard output and there is something to say. A person at a
    /// terminal gets a sentence instead.
    void report(const WriteJson& write);
    /// Bytes for standard output as they are.
    void raw(std::string_view bytes);

    /// A sentence for people, left out with --json.
    void say(std::string_view sentence);
    /// A sentence that people must see.
    void warn(std::string_view sentence);

    /// How far the work is, 0…1: a bar on a terminal, `{"progress":…}` with --json, else nothing. Reports
    /// that follow each other faster than anyone could read are passed over, the first and the last never.
    void progress(std::string_view label, double fraction, const WriteJson& record);

    [[nodiscard]] bool isJson() const { return m_isJson; }

private:
    void showBar(std::string_view label, double fraction, std::chrono::steady_clock::time_point now);
    void clearBar();

    bool m_isJson;
    bool m_hasBar;
    bool m_barIsShown = false;
    std::string m_label;
    std::optional<std::chrono::steady_clock::time_point> m_began;
    std::optional<std::chrono::steady_clock::time_point> m_reported;
    double m_lastFraction = 0;
};

/// Prefixes a sentence with the program's name and writes it to standard error.
void printFailure(std::string_view sentence);

} // namespace CommandLine
