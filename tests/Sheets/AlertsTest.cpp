// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Alerts.h>
#include <Roamly/Window/Sheets/PrivacyBanner.h>

#include <Sheets/SheetTesting.h>

#include <vector>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;

/// An alert on screen, and what was answered.
struct Shown {
    explicit Shown(const AlertContent& content)
        : alert(content, nullptr) {
        QObject::connect(&alert, &Alert::answered, &alert,
                         [this](Answer answer) { answers.push_back(answer); });
        alert.open();
    }
    void key(Qt::Key key) { QTest::keyClick(&alert, key); }

    std::vector<Answer> answers;
    Alert alert;
};

AlertContent privacy() {
    return Alerts::privacyConfirmation(
        u"Privacy: photos leave your computer"_s,
        u"OpenRouter (cloud) captions in the cloud. Each selected photo is uploaded to generate its caption — it does not stay on your computer. Built-in and Ollama caption locally instead."_s,
        u"Use OpenRouter (cloud)"_s);
}

TEST(Alerts, ThePrivacyConfirmationAgreesOnlyByItsButton) {
    Shown byReturn{privacy()};
    EXPECT_TRUE(says(byReturn.alert, u"Privacy: photos leave your computer"_s));
    photograph(byReturn.alert, u"alert-privacy"_s);
    byReturn.key(Qt::Key_Return);
    EXPECT_EQ(byReturn.answers, std::vector{Answer::Cancel});

    Shown byEscape{privacy()};
    byEscape.key(Qt::Key_Escape);
    EXPECT_EQ(byEscape.answers, std::vector{Answer::Cancel});

    Shown byButton{privacy()};
    press(byButton.alert, u"Use OpenRouter (cloud)"_s);
    EXPECT_EQ(byButton.answers, std::vector{Answer::Agree});
    EXPECT_FALSE(byButton.alert.isVisible());
}

TEST(Alerts, AreAnsweredOnce) {
    Shown shown{privacy()};
    press(shown.alert, u"Use OpenRouter (cloud)"_s);
    shown.alert.reject();
    shown.alert.close();
    EXPECT_EQ(shown.answers, std::vector{Answer::Agree});
}

TEST(Alerts, ClosingTheWindowIsEsc) {
    Shown shown{Alerts::saveChanges(u"Lisbon"_s)};
    shown.alert.close();
    EXPECT_EQ(shown.answers, std::vector{Answer::Cancel});
}

TEST(Alerts, NoLibraryIsSaid) {
    Shown shown{Alerts::noPhotoLibrary()};
    EXPECT_TRUE(says(shown.alert, u"No photo library found"_s));
    EXPECT_TRUE(
        says(shown.alert, u"Roamly looks for the libraries of Shotwell and digiKam and found none."_s));
    photograph(shown.alert, u"alert-no-library"_s);
    shown.key(Qt::Key_Return);
    EXPECT_EQ(shown.answers, std::vector{Answer::Ok});
}

TEST(Alerts, ALibraryThatIsDeniedIsShownInFiles) {
    Shown shown{Alerts::photoLibraryDenied(u"/home/ada/Pictures"_s)};
    EXPECT_TRUE(says(shown.alert, u"Photo library access is off"_s));
    EXPECT_TRUE(says(
        shown.alert,
        u"Roamly can’t read your photo library because access to “/home/ada/Pictures” was denied. Change the folder’s permissions, then try importing again."_s));
    photograph(shown.alert, u"alert-library-denied"_s);
    press(shown.alert, u"Show in Files"_s);
    EXPECT_EQ(shown.answers, std::vector{Answer::ShowInFiles});
}

TEST(Alerts, SavingIsWhatReturnDoesBeforeClosing) {
    Shown shown{Alerts::saveChanges(u"سفر لشبونة"_s)};
    EXPECT_TRUE(says(shown.alert, u"Save changes to “سفر لشبونة” before closing?"_s));
    photograph(shown.alert, u"alert-save"_s);
    shown.key(Qt::Key_Return);
    EXPECT_EQ(shown.answers, std::vector{Answer::Save});
    Shown discarded{Alerts::saveChanges(u"Lisbon"_s)};
    press(discarded.alert, u"Discard"_s);
    EXPECT_EQ(discarded.answers, std::vector{Answer::Discard});
}

TEST(Alerts, AFileChangedElsewhereIsKeptOrLoaded) {
    Shown shown{Alerts::fileChanged(u"Lisbon"_s)};
    photograph(shown.alert, u"alert-file-changed"_s);
    press(shown.alert, u"Load the File’s"_s);
    EXPECT_EQ(shown.answers, std::vector{Answer::LoadFile});
    Shown kept{Alerts::fileChanged(u"Lisbon"_s)};
    press(kept.alert, u"Keep Mine"_s);
    EXPECT_EQ(kept.answers, std::vector{Answer::KeepMine});
}

TEST(Alerts, ARecoveryCanWait) {
    Shown shown{Alerts::recovery(u"Lisbon"_s, u"today at 14:05"_s)};
    photograph(shown.alert, u"alert-recovery"_s);
    shown.key(Qt::Key_Escape);
    EXPECT_EQ(shown.answers, std::vector{Answer::Cancel});
    Shown recovered{Alerts::recovery(u"Lisbon"_s, u"today at 14:05"_s)};
    recovered.key(Qt::Key_Return);
    EXPECT_EQ(recovered.answers, std::vector{Answer::Recover});
}

TEST(Alerts, LongErrorsWrap) {
    Shown shown{Alerts::error(u"The project could not be saved"_s,
                              QString(300, u'w').replace(60, 1, u' ').replace(150, 1, u' '))};
    EXPECT_LE(shown.alert.width(), 1024);
    photograph(shown.alert, u"alert-error"_s);
}

TEST(PrivacyBanner, IsThereOnlyWithAText) {
    PrivacyBanner banner;
    EXPECT_TRUE(banner.isHidden());
    banner.resize(640, 36);
    banner.setText(u"Privacy alert — Photos are sent to OpenRouter (cloud)"_s);
    EXPECT_FALSE(banner.isHidden());
    EXPECT_TRUE(says(banner, u"Privacy alert — Photos are sent to OpenRouter (cloud)"_s));
    photograph(banner, u"banner"_s);
    banner.setText({});
    EXPECT_TRUE(banner.isHidden());
}

} // namespace
} // namespace Sheets
