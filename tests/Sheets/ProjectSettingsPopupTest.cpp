// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/OwnOrDefault.h>
#include <Roamly/Window/Sheets/ProjectSettingsPopup.h>

#include <Sheets/SheetTesting.h>

#include <vector>

namespace Sheets {
namespace {

using namespace Testing;
using namespace Qt::StringLiterals;
using ProjectModel::AIProvider;
using ProjectModel::ProjectSettings;

class ProjectSettingsPopupTest : public testing::Test {
protected:
    ProjectSettingsPopup& popup(const ProjectSettings& project = {}, const MusicFitOffer& offer = {}) {
        m_popup = std::make_unique<ProjectSettingsPopup>(project, Document::AppSettings{}, offer, nullptr);
        QObject::connect(m_popup.get(), &ProjectSettingsPopup::settingsEdited, m_popup.get(),
                         [this](const ProjectSettings& settings) { m_edits.push_back(settings); });
        QObject::connect(m_popup.get(), &ProjectSettingsPopup::providerChosen, m_popup.get(),
                         [this](std::optional<AIProvider> provider) { m_providers.push_back(provider); });
        m_popup->show();
        return *m_popup;
    }

    OwnOrDefaultSeconds& seconds() { return *control<OwnOrDefaultSeconds>(*m_popup, u"Seconds per photo"_s); }
    OwnOrDefaultChoice& choice(const QString& name) { return *control<OwnOrDefaultChoice>(*m_popup, name); }

    void type(const QString& text) {
        seconds().selectAll();
        QTest::keyClicks(&seconds(), text);
        QTest::keyClick(&seconds(), Qt::Key_Return);
    }

    std::unique_ptr<ProjectSettingsPopup> m_popup;
    std::vector<ProjectSettings> m_edits;
    std::vector<std::optional<AIProvider>> m_providers;
};

TEST_F(ProjectSettingsPopupTest, ShowsTheDefaultsOfAProjectWithoutOwnSettings) {
    ProjectSettingsPopup& settings = popup();
    EXPECT_EQ(settings.accessibleName(), u"Project Settings"_s);
    EXPECT_EQ(seconds().text(), u"Default (5 s)"_s);
    EXPECT_EQ(choice(u"Ken Burns motion"_s).currentText(), u"Default (On)"_s);
    EXPECT_EQ(choice(u"Chapter titles"_s).currentText(), u"Default (Separate title slide)"_s);
    EXPECT_EQ(choice(u"Generate captions with AI"_s).currentText(), u"Default (On)"_s);
    expectNamedControls(settings);
    photograph(settings, u"project-settings"_s);
}

TEST_F(ProjectSettingsPopupTest, ShowsTheProjectsOwn) {
    ProjectSettings own;
    own.photoDuration = 3.5;
    own.kenBurnsEnabled = false;
    own.aiProvider = AIProvider::openRouter;
    own.chapterStyle = ProjectModel::ChapterStyle::overlay;
    ProjectSettingsPopup& settings =
        popup(own, {.photoDuration = 4.2,
                    .explanation = u"4.2 s for each photo: the film ends with the music, 3:10."_s});
    EXPECT_EQ(seconds().text(), u"3.5 s"_s);
    EXPECT_EQ(choice(u"Ken Burns motion"_s).currentText(), u"Off"_s);
    EXPECT_EQ(choice(u"AI provider"_s).currentText(), u"OpenRouter (cloud)"_s);
    EXPECT_EQ(choice(u"Chapter titles"_s).currentText(), u"Overlay on first photo"_s);
    photograph(settings, u"project-settings-own"_s);
}

TEST_F(ProjectSettingsPopupTest, SteppingFromTheDefaultMakesItOwn) {
    popup();
    QTest::keyClick(&seconds(), Qt::Key_Up);
    ASSERT_EQ(m_edits.size(), 1U);
    EXPECT_EQ(m_edits.back().photoDuration, 5.5);
    EXPECT_EQ(seconds().text(), u"5.5 s"_s);
}

TEST_F(ProjectSettingsPopupTest, TypingTheDefaultsValueMakesItOwnToo) {
    popup();
    type(u"5"_s);
    ASSERT_EQ(m_edits.size(), 1U);
    EXPECT_EQ(m_edits.back().photoDuration, 5.0);
    EXPECT_EQ(seconds().text(), u"5 s"_s);
}

TEST_F(ProjectSettingsPopupTest, ClearingTheFieldGoesBackToTheDefault) {
    ProjectSettings own;
    own.photoDuration = 3.5;
    popup(own);
    seconds().selectAll();
    QTest::keyClick(&seconds(), Qt::Key_Backspace);
    QTest::keyClick(&seconds(), Qt::Key_Return);
    ASSERT_EQ(m_edits.size(), 1U);
    EXPECT_EQ(m_edits.back().photoDuration, std::nullopt);
    EXPECT_EQ(seconds().text(), u"Default (5 s)"_s);
}

TEST_F(ProjectSettingsPopupTest, LeavingTheFieldChangesNothing) {
    popup();
    QTest::keyClick(&seconds(), Qt::Key_Return);
    seconds().clearFocus();
    EXPECT_TRUE(m_edits.empty());
}

TEST_F(ProjectSettingsPopupTest, ADurationThatIsShownRoundedStaysExact) {
    ProjectSettings own;
    own.photoDuration = 4.123456;
    popup(own);
    EXPECT_EQ(seconds().text(), u"4.12 s"_s);
    QTest::keyClick(&choice(u"Ken Burns motion"_s), Qt::Key_Down);
    ASSERT_EQ(m_edits.size(), 1U);
    EXPECT_EQ(m_edits.back().photoDuration, 4.123456);
    EXPECT_EQ(m_edits.back().kenBurnsEnabled, true);
}

TEST_F(ProjectSettingsPopupTest, AChoiceGoesFromTheDefaultToOwnAndBack) {
    popup();
    OwnOrDefaultChoice& captions = choice(u"Generate captions with AI"_s);
    QTest::keyClick(&captions, Qt::Key_End);
    QTest::keyClick(&captions, Qt::Key_Home);
    ASSERT_EQ(m_edits.size(), 2U);
    EXPECT_EQ(m_edits[0].aiCaptionsEnabled, false);
    EXPECT_EQ(m_edits[1].aiCaptionsEnabled, std::nullopt);
}

TEST_F(ProjectSettingsPopupTest, TheProviderIsOnlyAWish) {
    ProjectSettingsPopup& settings = popup();
    OwnOrDefaultChoice& provider = choice(u"AI provider"_s);
    QTest::keyClick(&provider, Qt::Key_End);
    EXPECT_TRUE(m_edits.empty());
    ASSERT_EQ(m_providers.size(), 1U);
    EXPECT_EQ(m_providers.back(), AIProvider::openRouter);
    // Refused: the values come again as they were.
    settings.setValues({}, {});
    EXPECT_EQ(provider.own(), std::nullopt);
    EXPECT_EQ(m_providers.size(), 1U);
}

TEST_F(ProjectSettingsPopupTest, FitsToTheMusicOnlyWhereItCan) {
    ProjectSettingsPopup& settings =
        popup({}, {.photoDuration = {}, .explanation = u"Choose music first."_s});
    EXPECT_FALSE(button(settings, u"Fit to Music"_s)->isEnabled());
    EXPECT_TRUE(says(settings, u"Choose music first."_s));
    settings.setValues({}, {.photoDuration = 4.2, .explanation = u"4.2 s for each photo."_s});
    QSignalSpy fits{&settings, &ProjectSettingsPopup::musicFitAccepted};
    press(settings, u"Fit to Music"_s);
    ASSERT_EQ(fits.count(), 1);
    EXPECT_EQ(fits.first().first().toDouble(), 4.2);
}

TEST_F(ProjectSettingsPopupTest, EscCloses) {
    ProjectSettingsPopup& settings = popup();
    QTest::keyClick(&settings, Qt::Key_Escape);
    EXPECT_FALSE(settings.isVisible());
}

TEST(OwnOrDefault, ANameWithBracketsIsNotNested) {
    EXPECT_EQ(defaultText(u"Ollama (local)"_s), u"Default (Ollama, local)"_s);
}

} // namespace
} // namespace Sheets
