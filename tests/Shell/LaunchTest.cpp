// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/LaunchRequest.h>
#include <Roamly/Window/Shell/SingleInstance.h>
#include <Support/PrivateKeyring.h>

#include <gtest/gtest.h>

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <thread>
#include <vector>

using namespace Shell;

namespace {

LaunchRequest request(const QStringList& words) {
    return launchRequest(words, "/home/ann");
}

const QString name = QStringLiteral("app.roamly.Roamly");

} // namespace

TEST(LaunchRequest, WithoutWordsAWindowIsShown) {
    EXPECT_EQ(request({}), LaunchRequest{ShowWindow{}});
    EXPECT_EQ(request({QStringLiteral("--new")}), LaunchRequest{ShowWindow{.inNewWindow = true}});
}

TEST(LaunchRequest, ProjectsAreOpenedAndAllElseIsImported) {
    EXPECT_EQ(request({QStringLiteral("a.roamly"), QStringLiteral("/b/c.roamly"), QStringLiteral("../pics")}),
              (LaunchRequest{OpenFiles{{"/home/ann/a.roamly", "/b/c.roamly"}, {"/home/pics"}}}));
    EXPECT_EQ(request({QStringLiteral("file:///x/y%20z.roamly")}),
              (LaunchRequest{OpenFiles{{"/x/y z.roamly"}, {}}}));
    EXPECT_EQ(request({QStringLiteral("--"), QStringLiteral("--odd.roamly")}),
              (LaunchRequest{OpenFiles{{"/home/ann/--odd.roamly"}, {}}}));
}

TEST(LaunchRequest, PlayingTakesAProjectAndWhereToBegin) {
    EXPECT_EQ(request({QStringLiteral("--play"), QStringLiteral("--from=2.5"), QStringLiteral("--window"),
                       QStringLiteral("--"), QStringLiteral("a.roamly")}),
              (LaunchRequest{PlayProject{"/home/ann/a.roamly", 2.5, true}}));
    EXPECT_EQ(request({QStringLiteral("--choose-and-play")}), LaunchRequest{PlayProject{}});
    EXPECT_EQ(request({QStringLiteral("--service")}), LaunchRequest{Serve{}});
}

TEST(SingleInstance, WithoutABusItRunsAlone) {
    SingleInstance instance{QDBusConnection{QStringLiteral("nowhere")}, name};
    EXPECT_TRUE(instance.claim());
}

TEST(SingleInstance, ALaterOneHandsItsFilesOver) {
    if (!PrivateKeyring::isPossible())
        GTEST_SKIP() << "dbus-daemon is not installed";
    const PrivateKeyring bus{PrivateKeyring::Daemon::Absent};
    const auto connect = [](const QString& as) {
        return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), as);
    };
    SingleInstance first{connect(QStringLiteral("first")), name};
    ASSERT_TRUE(first.claim());
    SingleInstance later{connect(QStringLiteral("later")), name};
    EXPECT_FALSE(later.claim());

    std::vector<LaunchRequest> heard;
    QString token;
    QObject::connect(&first, &SingleInstance::requested, &first,
                     [&](const LaunchRequest& asked, const QString& activationToken) {
                         heard.push_back(asked);
                         token = activationToken;
                     });
    const std::vector<LaunchRequest> all{
        OpenFiles{{"/a b/ü.roamly"}, {"/pics"}},
        ShowWindow{},
        ShowWindow{.inNewWindow = true},
        PlayProject{"/a.roamly", 2.5, true},
    };
    // The first answers from its event loop, so the asking is done beside it.
    std::vector<char> answers;
    std::jthread asking{[&] {
        for (const LaunchRequest& asked : all)
            answers.push_back(later.handOver(asked, QStringLiteral("token-7")) ? 1 : 0);
    }};
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard.size() == all.size(); }));
    asking.join();
    EXPECT_EQ(heard, all);
    EXPECT_EQ(answers, std::vector<char>(all.size(), 1));
    EXPECT_EQ(token, QStringLiteral("token-7"));
    QDBusConnection::disconnectFromBus(QStringLiteral("first"));
    QDBusConnection::disconnectFromBus(QStringLiteral("later"));
}

TEST(DesktopFiles, TheyAreAsTheDesktopWantsThem) {
    QProcess validate;
    validate.start(QStringLiteral("desktop-file-validate"),
                   {QStringLiteral(ROAMLY_PACKAGING "/app.roamly.Roamly.desktop")});
    if (!validate.waitForStarted())
        GTEST_SKIP() << "desktop-file-utils is not installed";
    ASSERT_TRUE(validate.waitForFinished());
    EXPECT_EQ(validate.exitCode(), 0) << validate.readAll().toStdString();
}

TEST(DesktopFiles, TheMimeTypeIsKnownByNameAndByContent) {
    QTemporaryDir folder;
    ASSERT_TRUE(QDir{folder.path()}.mkpath(QStringLiteral("mime/packages")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(ROAMLY_PACKAGING "/app.roamly.Roamly.xml"),
                            folder.filePath(QStringLiteral("mime/packages/app.roamly.Roamly.xml"))));
    QProcess update;
    update.start(QStringLiteral("update-mime-database"), {folder.filePath(QStringLiteral("mime"))});
    if (!update.waitForStarted())
        GTEST_SKIP() << "shared-mime-info is not installed";
    ASSERT_TRUE(update.waitForFinished());
    EXPECT_EQ(update.exitCode(), 0);
    QFile globs{folder.filePath(QStringLiteral("mime/globs2"))};
    ASSERT_TRUE(globs.open(QIODevice::ReadOnly));
    EXPECT_TRUE(globs.readAll().contains("application/vnd.roamly.project+json:*.roamly"));
    QFile magic{folder.filePath(QStringLiteral("mime/magic"))};
    ASSERT_TRUE(magic.open(QIODevice::ReadOnly));
    EXPECT_TRUE(magic.readAll().contains("application/vnd.roamly.project+json"));
}
