// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Theme.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <filesystem>
#include <memory>
#include <string>

namespace {

/// Windows as every machine makes them, with settings, caches and states of their own.
class WindowTestEnvironment : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", "96");
        std::string pattern = (std::filesystem::temp_directory_path() / "roamly-shell-XXXXXX").string();
        m_home = mkdtemp(pattern.data());
        for (const char* const name :
             {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
            qputenv(name, (m_home / name).string().c_str());
        m_application = std::make_unique<QApplication>(m_argumentCount, m_arguments);
        QApplication::setQuitOnLastWindowClosed(false);
        QApplication::setFont(QFont{QStringLiteral("Inter"), 10});
        Theme::apply(*m_application, Theme::Scheme::Light);
    }

    void TearDown() override {
        m_application.reset();
        std::filesystem::remove_all(m_home);
    }

private:
    std::filesystem::path m_home;
    char m_name[6] = "tests";
    char* m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    std::unique_ptr<QApplication> m_application;
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new WindowTestEnvironment);

} // namespace
