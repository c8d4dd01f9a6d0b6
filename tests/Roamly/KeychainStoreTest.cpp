#include "PrivateKeyring.h"

#include <Roamly/KeychainStore.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace {

using namespace Roamly;

const KeychainStore::LegacyKey noLegacyKey{[] { return std::optional<std::string>{}; }, [] {}};

/// What `secret-tool` or a keyring program would be shown.
std::string shownItems() {
    std::string text;
    FILE* pipe =
        ::popen("gdbus call --session --dest org.freedesktop.secrets --object-path "
                "/org/freedesktop/secrets/collection/login --method org.freedesktop.DBus.Properties.Get "
                "org.freedesktop.Secret.Collection Items 2>&1; for n in 1 2; do gdbus call --session --dest "
                "org.freedesktop.secrets --object-path /org/freedesktop/secrets/collection/login/$n --method "
                "org.freedesktop.DBus.Properties.GetAll org.freedesktop.Secret.Item 2>/dev/null; done",
                "r");
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr)
        text += buffer.data();
    ::pclose(pipe);
    return text;
}

class KeychainStoreTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(PrivateKeyring::isPossible()) << "dbus-daemon and gnome-keyring-daemon are needed";
    }
};

TEST_F(KeychainStoreTest, HasNoKeyAtFirstLaunch) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    EXPECT_TRUE(KeychainStore::isAvailable());
    EXPECT_EQ(KeychainStore::load(noLegacyKey), std::nullopt);
}

TEST_F(KeychainStoreTest, GivesBackWhatWasSaved) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    EXPECT_TRUE(KeychainStore::save("sk-ключ"));
    EXPECT_EQ(KeychainStore::load(noLegacyKey), "sk-ключ");
}

TEST_F(KeychainStoreTest, SavingTwiceUpdatesTheOneItem) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    KeychainStore::save("first");
    KeychainStore::save("second");
    EXPECT_EQ(KeychainStore::read(), "second");
    const std::string items = shownItems();
    EXPECT_NE(items.find("collection/login/1"), std::string::npos) << items;
    EXPECT_EQ(items.find("collection/login/2"), std::string::npos) << items;
}

TEST_F(KeychainStoreTest, LabelsTheItemSoThatAPersonFindsIt) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    KeychainStore::save("key");
    const std::string items = shownItems();
    EXPECT_NE(items.find("Roamly: OpenRouter API key"), std::string::npos) << items;
    EXPECT_NE(items.find("'service': 'app.roamly.Roamly'"), std::string::npos) << items;
    EXPECT_NE(items.find("'account': 'openrouter'"), std::string::npos) << items;
}

TEST_F(KeychainStoreTest, AnEmptyKeyRemovesTheItem) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    KeychainStore::save("key");
    EXPECT_TRUE(KeychainStore::save(""));
    EXPECT_EQ(KeychainStore::read(), std::nullopt);
    EXPECT_TRUE(KeychainStore::remove());
}

TEST_F(KeychainStoreTest, MovesAKeyThatAnOlderVersionLeftInTheSettings) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    std::optional<std::string> old = "old key";
    const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
    EXPECT_EQ(KeychainStore::load(legacy), "old key");
    EXPECT_FALSE(old);
    EXPECT_EQ(KeychainStore::read(), "old key");
}

TEST_F(KeychainStoreTest, PrefersTheStoredKeyToAnOldOne) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Running};
    KeychainStore::save("new");
    std::optional<std::string> old = "old";
    const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
    EXPECT_EQ(KeychainStore::load(legacy), "new");
    EXPECT_EQ(old, "old");
}

TEST_F(KeychainStoreTest, FailsSilentlyWithoutASecretServiceAndLosesNothing) {
    const PrivateKeyring keyring{PrivateKeyring::Daemon::Absent};
    EXPECT_FALSE(KeychainStore::isAvailable());
    EXPECT_FALSE(KeychainStore::save("key"));
    EXPECT_EQ(KeychainStore::read(), std::nullopt);
    std::optional<std::string> old = "old";
    const KeychainStore::LegacyKey legacy{[&] { return old; }, [&] { old.reset(); }};
    EXPECT_EQ(KeychainStore::load(legacy), "old");
    EXPECT_EQ(old, "old");
}

} // namespace
