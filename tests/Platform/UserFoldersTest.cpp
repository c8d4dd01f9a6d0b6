// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/UserFolders.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace {

/// A variable as it is to be, and as it was when this goes.
class Variable {
public:
    Variable(const char* name, const char* value)
        : m_name(name) {
        if (const char* before = std::getenv(name))
            m_before = before;
        set(value);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(m_before ? m_before->c_str() : nullptr); }

private:
    void set(const char* value) {
        if (value)
            ::setenv(m_name, value, 1);
        else
            ::unsetenv(m_name);
    }
    const char* m_name;
    std::optional<std::string> m_before;
};

TEST(UserFoldersTest, FollowTheVariables) {
    const Variable state{"XDG_STATE_HOME", "/var/states"};
    const Variable data{"XDG_DATA_HOME", "/var/data"};
    EXPECT_EQ(Platform::UserFolders::state(), "/var/states/app.roamly.Roamly");
    EXPECT_EQ(Platform::UserFolders::sharedData(), "/var/data");
}

TEST(UserFoldersTest, AreInTheHomeFolderWhereAVariableIsUnsetOrNoAbsolutePath) {
    const Variable home{"HOME", "/home/me"};
    const Variable state{"XDG_STATE_HOME", nullptr};
    const Variable data{"XDG_DATA_HOME", "relative"};
    EXPECT_EQ(Platform::UserFolders::state(), "/home/me/.local/state/app.roamly.Roamly");
    EXPECT_EQ(Platform::UserFolders::sharedData(), "/home/me/.local/share");
}

} // namespace
