// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/DarkMode.h>

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <memory>

namespace {

using Theme::DarkMode;
using Theme::Scheme;

constexpr auto service = "app.roamly.TestPortal";

/// Answers as a settings portal does.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    explicit Portal(uint preference)
        : m_preference(preference) {}

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& group,
                                   const QString& key) { // NOLINT(readability-identifier-naming)
        if (group != QStringLiteral("org.freedesktop.appearance") || key != QStringLiteral("color-scheme"))
            return QDBusVariant{QVariant::fromValue(QDBusVariant{QString{}})};
        return QDBusVariant{QVariant::fromValue(QDBusVariant{m_preference})};
    }

private:
    uint m_preference;
};

/// A session bus of its own for as long as it lives.
class PrivateBus {
public:
    PrivateBus() {
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForStarted() && m_daemon.waitForReadyRead())
            m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QDBusConnection connection(const char* name) const {
        return QDBusConnection::connectToBus(m_address, QString::fromLatin1(name));
    }
    [[nodiscard]] bool runs() const { return !m_address.isEmpty(); }

private:
    QProcess m_daemon;
    QString m_address;
};

class DarkModeTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_bus.runs()); }

    void answer(uint preference) {
        m_portal = std::make_unique<Portal>(preference);
        QDBusConnection bus = m_bus.connection("portal");
        ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), m_portal.get(),
                                       QDBusConnection::ExportScriptableContents));
        ASSERT_TRUE(bus.registerService(QString::fromLatin1(service)));
    }

    /// The portal's signal that a setting changed.
    void tell(const QString& group, const QString& key, uint preference) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant{preference});
        ASSERT_TRUE(m_bus.connection("portal").send(signal));
    }

    [[nodiscard]] DarkMode* mode(Scheme fallback) {
        m_mode =
            std::make_unique<DarkMode>(fallback, m_bus.connection("window"), QString::fromLatin1(service));
        return m_mode.get();
    }

    void TearDown() override {
        m_mode.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
        QDBusConnection::disconnectFromBus(QStringLiteral("window"));
    }

    PrivateBus m_bus;
    std::unique_ptr<Portal> m_portal;
    std::unique_ptr<DarkMode> m_mode;
};

TEST_F(DarkModeTest, IsWhatThePortalSays) {
    answer(1);
    DarkMode* const dark = mode(Scheme::Light);
    EXPECT_EQ(dark->scheme(), Scheme::Light) << "nothing waits for the answer";
    QSignalSpy changes{dark, &DarkMode::changed};
    ASSERT_TRUE(changes.wait());
    EXPECT_EQ(dark->scheme(), Scheme::Dark);
}

TEST_F(DarkModeTest, FollowsThePortal) {
    answer(1);
    DarkMode* const dark = mode(Scheme::Light);
    QSignalSpy changes{dark, &DarkMode::changed};
    ASSERT_TRUE(changes.wait());
    tell(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"), 2U);
    tell(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), 2U);
    ASSERT_TRUE(changes.wait());
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(dark->scheme(), Scheme::Light);
}

TEST_F(DarkModeTest, WithoutAPreferenceItIsThePlatforms) {
    answer(1);
    DarkMode* const dark = mode(Scheme::Light);
    QSignalSpy changes{dark, &DarkMode::changed};
    ASSERT_TRUE(changes.wait());
    tell(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), 0U);
    ASSERT_TRUE(changes.wait());
    EXPECT_EQ(dark->scheme(), Scheme::Light);
}

TEST_F(DarkModeTest, WithoutAPortalItIsThePlatforms) {
    DarkMode* const dark = mode(Scheme::Dark);
    QSignalSpy changes{dark, &DarkMode::changed};
    // The bus answers in order: once it has answered this, it has refused the other call too.
    QDBusConnection bus = m_bus.connection("window");
    (void)bus.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                  QStringLiteral("org.freedesktop.DBus.Peer"),
                                                  QStringLiteral("Ping")));
    QCoreApplication::processEvents();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(dark->scheme(), Scheme::Dark);
}

TEST(DarkMode, WithoutABusItIsThePlatforms) {
    const DarkMode mode{Scheme::Dark, QDBusConnection{QStringLiteral("no such connection")}};
    EXPECT_EQ(mode.scheme(), Scheme::Dark);
}

} // namespace

#include "DarkModeTest.moc"
