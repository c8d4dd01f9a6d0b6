// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

class QDBusConnection;

namespace Platform {

/// Tells the user what happened while they look elsewhere. Without a notification service nothing is shown.
/// For a thread with an event loop of Qt's.
class Notifications {
public:
    explicit Notifications(const QDBusConnection& bus);

    /// Takes the place of the notification before, so that they never pile up; returns at once. Plain text in
    /// UTF-8.
    void show(const std::string& title, const std::string& text);

    /// Takes it away again, when what it told is in front of the user.
    void close();

private:
    struct State;
    static void send(const std::shared_ptr<State>& state, const std::string& title, const std::string& text);

    std::shared_ptr<State> m_state;
};

} // namespace Platform
