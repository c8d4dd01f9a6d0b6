// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Theme.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <memory>

namespace {

/// The player is drawn alike on every machine: no desktop's font, scale or style.
class StageEnvironment : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", "96");
        qputenv("QT_SCALE_FACTOR", "1");
        m_application = std::make_unique<QApplication>(m_argumentCount, m_arguments);
        QApplication::setFont(QFont{QStringLiteral("Inter"), 10});
        QApplication::setCursorFlashTime(0);
        Theme::apply(*m_application, Theme::Scheme::Light);
    }

    void TearDown() override { m_application.reset(); }

private:
    char m_name[6] = "tests";
    char* m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    std::unique_ptr<QApplication> m_application;
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new StageEnvironment);

} // namespace
