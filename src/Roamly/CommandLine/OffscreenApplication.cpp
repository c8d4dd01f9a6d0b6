// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/OffscreenApplication.h>

#include <QGuiApplication>
#include <array>
#include <cstdio>

namespace CommandLine {

namespace {

/// Of Qt's own messages only the last words before an abort are worth showing on a command line.
void showFatalMessages(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

struct OffscreenApplication::State {
    // The application keeps references to both.
    std::array<char, 7> name{"roamly"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    std::unique_ptr<QGuiApplication> application;
};

OffscreenApplication::OffscreenApplication()
    : m_state(std::make_unique<State>()) {
    qInstallMessageHandler(showFatalMessages);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    m_state->application = std::make_unique<QGuiApplication>(m_state->count, m_state->arguments.data());
}

OffscreenApplication::~OffscreenApplication() = default;

} // namespace CommandLine
