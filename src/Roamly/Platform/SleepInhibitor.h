// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

class QDBusConnection;

namespace Platform {

/// The screen stays on and the machine awake for as long as this lives: by the desktop's screen saver, else
/// by its portal, else not at all. Nothing waits. For a thread with an event loop of Qt's.
class SleepInhibitor {
public:
    /// `reason` is shown to the user: "Exporting a slideshow".
    SleepInhibitor(const QDBusConnection& bus, const std::string& reason);
    ~SleepInhibitor();
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace Platform
