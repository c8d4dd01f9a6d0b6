// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <memory>

namespace {

/// Text can only be drawn while there is an application object; it needs no display.
class GuiApplicationEnvironment : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
    }

    void TearDown() override { m_application.reset(); }

private:
    char m_name[6] = "tests";
    char* m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    std::unique_ptr<QGuiApplication> m_application;
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new GuiApplicationEnvironment);

} // namespace
