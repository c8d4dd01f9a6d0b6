// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>
#include <clocale>
#include <memory>

namespace {

/// The tests' views need an application; they run without a display and look the same on every machine.
class WindowEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", "96");
        m_application = std::make_unique<QApplication>(m_argumentCount, m_arguments);
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setFont(QFont{QStringLiteral("Inter"), 10});
        QApplication::setCursorFlashTime(0);
    }
    void TearDown() override { m_application.reset(); }

private:
    char m_name[10] = "GridTests";
    char* m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    std::unique_ptr<QApplication> m_application;
};

// The framework owns it.
const auto* const environment = ::testing::AddGlobalTestEnvironment(new WindowEnvironment);

} // namespace
