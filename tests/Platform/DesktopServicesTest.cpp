// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/FileManager.h>
#include <Roamly/Platform/Notifications.h>
#include <Roamly/Platform/SleepInhibitor.h>
#include <Support/PrivateKeyring.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using Platform::FileManager;
using Platform::Notifications;
using Platform::SleepInhibitor;
using testing::ElementsAre;
using testing::IsEmpty;

/// A service of the desktop: writes down what it is asked, and answers as it was told.
class FakeService : public QDBusVirtualObject {
public:
    FakeService(QDBusConnection bus, const QString& name)
        : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        EXPECT_TRUE(m_bus.registerService(name)) << name.toStdString();
        m_name = name;
    }
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;
    ~FakeService() override {
        m_bus.unregisterService(m_name);
        m_bus.unregisterObject(QStringLiteral("/"));
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        const std::string method = message.member().toStdString();
        methods.push_back(method);
        arguments[method].push_back(message.arguments());
        path = message.path();
        const auto answer = answers.find(method);
        bus.send(message.createReply(answer == answers.end() ? QVariantList{} : answer->second));
        return true;
    }

    std::map<std::string, QVariantList> answers;
    std::vector<std::string> methods;
    std::map<std::string, std::vector<QVariantList>> arguments;
    QString path;

private:
    QDBusConnection m_bus;
    QString m_name;
};

class DesktopServicesTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(PrivateKeyring::isPossible()) << "dbus-daemon is needed";
        static int count = 1;
        static char name[] = "tests";
        static char* names[] = {name, nullptr};
        static const QCoreApplication application{count, names};
        s_bus = std::make_unique<PrivateKeyring>(PrivateKeyring::Daemon::Absent);
    }
    static void TearDownTestSuite() { s_bus.reset(); }
    void TearDown() override {
        for (const char* name : {"program", "desktop"})
            QDBusConnection::disconnectFromBus(QLatin1String(name));
    }
    static QDBusConnection connection(const char* name) {
        return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                             QLatin1String(name));
    }
    static void waitUntil(const std::function<bool()>& holds) {
        while (!holds())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    /// Until all that was sent before has been answered.
    void settle() const {
        bool isAnswered = false;
        FileManager{m_program, [&](const auto&) { isAnswered = true; }}.show({"/nowhere/a"});
        waitUntil([&] { return isAnswered; });
    }

    QDBusConnection m_program = connection("program");
    QDBusConnection m_desktop = connection("desktop");

private:
    static inline std::unique_ptr<PrivateKeyring> s_bus;
};

TEST_F(DesktopServicesTest, FilesAreShownByTheFileManager) {
    FakeService files{m_desktop, QStringLiteral("org.freedesktop.FileManager1")};
    std::vector<std::filesystem::path> opened;
    const FileManager manager{m_program,
                              [&](const std::filesystem::path& folder) { opened.push_back(folder); }};
    manager.show({"/photos/My Trip/a.jpg", "/photos/b.jpg"}, "token");
    waitUntil([&] { return !files.methods.empty(); });
    EXPECT_THAT(files.methods, ElementsAre("ShowItems"));
    const QVariantList arguments = files.arguments["ShowItems"].at(0);
    EXPECT_EQ(arguments.at(0).toStringList(), (QStringList{QStringLiteral("file:///photos/My%20Trip/a.jpg"),
                                                           QStringLiteral("file:///photos/b.jpg")}));
    EXPECT_EQ(arguments.at(1).toString(), QStringLiteral("token"));
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(DesktopServicesTest, WithoutAFileManagerTheFolderIsOpened) {
    std::vector<std::filesystem::path> opened;
    const auto open = [&](const std::filesystem::path& folder) { opened.push_back(folder); };
    FileManager{m_program, open}.show({"/photos/a.jpg"});
    waitUntil([&] { return !opened.empty(); });
    EXPECT_THAT(opened, ElementsAre("/photos"));
}

TEST_F(DesktopServicesTest, WithoutABusTheFolderIsOpened) {
    std::vector<std::filesystem::path> opened;
    const auto open = [&](const std::filesystem::path& folder) { opened.push_back(folder); };
    FileManager{QDBusConnection{QStringLiteral("none")}, open}.show({"/photos/a.jpg"});
    waitUntil([&] { return !opened.empty(); });
    EXPECT_THAT(opened, ElementsAre("/photos"));
}

TEST_F(DesktopServicesTest, WithoutABusNothingElseHappens) {
    const QDBusConnection none{QStringLiteral("none")};
    Notifications notifications{none};
    notifications.show("Slideshow exported", "");
    notifications.close();
    const SleepInhibitor inhibitor{none, "Playing a slideshow"};
}

TEST_F(DesktopServicesTest, ANotificationTakesThePlaceOfTheOneBefore) {
    FakeService service{m_desktop, QStringLiteral("org.freedesktop.Notifications")};
    service.answers["Notify"] = {7U};
    Notifications notifications{m_program};
    notifications.show("Slideshow exported", "“Rome & more.mov” is ready.");
    notifications.show("dropped", "before the first was answered");
    notifications.show("Captions are done", "");
    auto& sent = service.arguments["Notify"];
    waitUntil([&] { return sent.size() == 2; });
    EXPECT_EQ(sent[0].at(0).toString(), QStringLiteral("Roamly"));
    EXPECT_EQ(sent[0].at(1).toUInt(), 0U);
    EXPECT_EQ(sent[0].at(3).toString(), QStringLiteral("Slideshow exported"));
    EXPECT_EQ(sent[0].at(4).toString(), QString::fromUtf8("“Rome &amp; more.mov” is ready."));
    EXPECT_EQ(sent[1].at(1).toUInt(), 7U);
    EXPECT_EQ(sent[1].at(3).toString(), QStringLiteral("Captions are done"));
    EXPECT_EQ(sent[1].at(7).toInt(), -1);
}

TEST_F(DesktopServicesTest, ANotificationIsTakenAwayAlsoWhileItIsOnItsWay) {
    FakeService service{m_desktop, QStringLiteral("org.freedesktop.Notifications")};
    service.answers["Notify"] = {7U};
    Notifications notifications{m_program};
    notifications.close();
    notifications.show("Slideshow exported", "");
    notifications.close();
    waitUntil([&] { return !service.arguments["CloseNotification"].empty(); });
    EXPECT_EQ(service.arguments["CloseNotification"][0].at(0).toUInt(), 7U);
    EXPECT_THAT(service.methods, ElementsAre("Notify", "CloseNotification"));
}

TEST_F(DesktopServicesTest, WithoutANotificationServiceNothingHappens) {
    Notifications notifications{m_program};
    notifications.show("Slideshow exported", "");
    settle();
    notifications.show("again", "");
    notifications.close();
    settle();
}

TEST_F(DesktopServicesTest, TheScreenSaverIsHeldForAsLongAsTheInhibitorLives) {
    FakeService saver{m_desktop, QStringLiteral("org.freedesktop.ScreenSaver")};
    saver.answers["Inhibit"] = {42U};
    {
        const SleepInhibitor inhibitor{m_program, "Exporting a slideshow"};
        waitUntil([&] { return !saver.methods.empty(); });
        settle();
        EXPECT_THAT(saver.methods, ElementsAre("Inhibit"));
        EXPECT_EQ(saver.arguments["Inhibit"][0].at(0).toString(), QStringLiteral("Roamly"));
        EXPECT_EQ(saver.arguments["Inhibit"][0].at(1).toString(), QStringLiteral("Exporting a slideshow"));
    }
    waitUntil([&] { return saver.methods.size() == 2; });
    EXPECT_EQ(saver.arguments["UnInhibit"].at(0).at(0).toUInt(), 42U);
}

TEST_F(DesktopServicesTest, WhatIsGrantedTooLateIsGivenBack) {
    FakeService saver{m_desktop, QStringLiteral("org.freedesktop.ScreenSaver")};
    saver.answers["Inhibit"] = {42U};
    { const SleepInhibitor inhibitor{m_program, "short"}; }
    waitUntil([&] { return saver.methods.size() == 2; });
    EXPECT_THAT(saver.methods, ElementsAre("Inhibit", "UnInhibit"));
}

TEST_F(DesktopServicesTest, WithoutAScreenSaverThePortalIsAsked) {
    FakeService portal{m_desktop, QStringLiteral("org.freedesktop.portal.Desktop")};
    portal.answers["Inhibit"] = {
        QVariant::fromValue(QDBusObjectPath{QStringLiteral("/org/freedesktop/portal/desktop/request/1/a")})};
    {
        const SleepInhibitor inhibitor{m_program, "Playing a slideshow"};
        waitUntil([&] { return !portal.methods.empty(); });
        settle();
        EXPECT_EQ(portal.arguments["Inhibit"].at(0).at(1).toUInt(), 12U);
    }
    waitUntil([&] { return portal.methods.size() == 2; });
    EXPECT_THAT(portal.methods, ElementsAre("Inhibit", "Close"));
    EXPECT_EQ(portal.path, QStringLiteral("/org/freedesktop/portal/desktop/request/1/a"));
}

TEST_F(DesktopServicesTest, WithNeitherNothingHappens) {
    const SleepInhibitor inhibitor{m_program, "Playing a slideshow"};
    settle();
}

} // namespace
