// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/Actions.h>
#include <Roamly/Window/Shell/MainToolBar.h>
#include <Roamly/Window/Shell/Menus.h>
#include <Roamly/Window/Shell/Notices.h>
#include <Roamly/Window/Shell/Situation.h>
#include <Roamly/Window/Shell/WorkStrip.h>

#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QToolButton>
#include <chrono>

using namespace Shell;

namespace {

Situation reviewed() {
    Situation now;
    now.photos = 10;
    now.selected = 6;
    now.captionsHelp = "Generate captions for the selected photos with Ollama (local)";
    return now;
}

QToolButton* button(const QWidget& bar, const QString& name) {
    for (QToolButton* const found : bar.findChildren<QToolButton*>()) {
        if (found->accessibleName() == name)
            return found;
    }
    return nullptr;
}

} // namespace

TEST(Situation, WithoutPhotosThereIsNothingToPlayOrToExport) {
    for (const Intent intent : {Intent::play, Intent::exportMovie, Intent::analyze, Intent::generateCaptions,
                                Intent::resetAnalysis}) {
        EXPECT_FALSE(actionState(intent, {}).isEnabled);
        EXPECT_TRUE(actionState(intent, {}).help.has_value());
        EXPECT_TRUE(actionState(intent, reviewed()).isEnabled);
    }
    EXPECT_TRUE(actionState(Intent::importFolder, {}).isEnabled);
}

TEST(Situation, GeneratingCaptionsTellsByWhomOrWhyNot) {
    Situation now = reviewed();
    EXPECT_EQ(actionState(Intent::generateCaptions, now).help, now.captionsHelp);
    now.isCaptioning = true;
    EXPECT_FALSE(actionState(Intent::generateCaptions, now).isEnabled);
    EXPECT_EQ(actionState(Intent::generateCaptions, now).help, "Captions are being generated already");
    now.allowsAICaptions = false;
    now.captionsHelp = "Turn on “Generate captions with AI” in Project Settings first";
    EXPECT_FALSE(actionState(Intent::generateCaptions, now).isEnabled);
    EXPECT_EQ(actionState(Intent::generateCaptions, now).help, now.captionsHelp);
}

TEST(Situation, AnExportThatRunsCanBeLookedAt) {
    Situation now = reviewed();
    now.isExporting = true;
    EXPECT_TRUE(actionState(Intent::exportMovie, now).isEnabled);
}

TEST(Actions, UndoNamesTheStepAsItIs) {
    Actions actions;
    Situation now;
    EXPECT_FALSE(actions[Intent::undo]->isEnabled());
    now.undoName = "Set Place R&D";
    actions.show(now);
    EXPECT_TRUE(actions[Intent::undo]->isEnabled());
    EXPECT_EQ(actions[Intent::undo]->text(), QStringLiteral("&Undo Set Place R&&D"));
}

TEST(Actions, EachKeyBelongsToOneAction) {
    Actions actions;
    QSet<QString> seen;
    for (const auto& [intent, action] : actions.all()) {
        for (const QKeySequence& key : action->shortcuts()) {
            EXPECT_FALSE(seen.contains(key.toString())) << key.toString().toStdString();
            seen.insert(key.toString());
        }
    }
    EXPECT_TRUE(seen.contains(QStringLiteral("Ctrl+S")));
}

TEST(Menus, EveryActionIsInTheMenuBar) {
    Actions actions;
    QMenuBar bar;
    fillMenuBar(bar, actions, [](QMenu&) {});
    QSet<QAction*> inMenus;
    for (QMenu* const menu : bar.findChildren<QMenu*>()) {
        for (QAction* const action : menu->actions())
            inMenus.insert(action);
    }
    for (const auto& [intent, action] : actions.all())
        EXPECT_TRUE(inMenus.contains(action)) << action->text().toStdString();
}

TEST(MainToolBar, TheButtonsHaveTheirNamesAndHelp) {
    Actions actions;
    actions.show(reviewed());
    MainToolBar bar{actions};
    const std::pair<const char*, const char*> expected[] = {
        {"Import", "Import photos from a folder or a photo-library album"},
        {"Analyze", "Find locations, group duplicates, and pick the best shots"},
        {"Generate Captions", "Generate captions for the selected photos with Ollama (local)"},
        {"Caption Prompt", "Set the AI prompt that steers caption tone and interpretation"},
        {"Project Settings", "Per-project timing, motion, captions, and AI provider"},
        {"More", "Reset analysis, choose music, or manage sources"},
        {"Play", "Play the slideshow"},
        {"Export", "Export the slideshow to a video file"},
    };
    for (const auto& [name, help] : expected) {
        QToolButton* const found = button(bar, QString::fromUtf8(name));
        ASSERT_NE(found, nullptr) << name;
        EXPECT_EQ(found->text(), QString::fromUtf8(name));
        EXPECT_EQ(found->toolTip(), QString::fromUtf8(help));
        EXPECT_EQ(found->accessibleDescription(), QString::fromUtf8(help));
    }
}

TEST(MainToolBar, WhereItIsNarrowTheIconsStandAlone) {
    Actions actions;
    MainToolBar bar{actions};
    bar.show();
    bar.resize(2000, 48);
    EXPECT_EQ(button(bar, QStringLiteral("Play"))->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    bar.resize(500, 48);
    EXPECT_EQ(button(bar, QStringLiteral("Play"))->toolButtonStyle(), Qt::ToolButtonIconOnly);
    bar.resize(2000, 48);
    EXPECT_EQ(button(bar, QStringLiteral("Play"))->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
}

TEST(WorkStrip, EachWorkHasARowWithWhatIsDoneAndForHowLongStill) {
    double now = 0;
    WorkStrip strip{[&] { return now; }};
    EXPECT_TRUE(strip.isHidden());
    strip.show(WorkKind::analysis, WorkRow{WorkKind::analysis, "Finding duplicates… 0/40", 0.0, false});
    strip.show(WorkKind::exportMovie, WorkRow{WorkKind::exportMovie, "Preparing…", std::nullopt, false});
    EXPECT_FALSE(strip.isHidden());
    now = 10;
    strip.show(WorkKind::analysis, WorkRow{WorkKind::analysis, "Finding duplicates… 10/40", 0.25, false});
    const auto bars = strip.findChildren<QProgressBar*>();
    ASSERT_EQ(bars.size(), 2);
    EXPECT_EQ(bars[0]->value(), 250);
    EXPECT_EQ(bars[1]->maximum(), 0);
    bool saysWhen = false;
    for (const QLabel* const label : strip.findChildren<QLabel*>())
        saysWhen = saysWhen || label->text() == QStringLiteral("less than a minute left");
    EXPECT_TRUE(saysWhen);

    QSignalSpy cancelled{&strip, &WorkStrip::cancelled};
    for (QPushButton* const cancel : strip.findChildren<QPushButton*>()) {
        if (cancel->accessibleName() == QStringLiteral("Cancel Export"))
            cancel->click();
    }
    ASSERT_EQ(cancelled.size(), 1);
    strip.show(WorkKind::analysis, std::nullopt);
    EXPECT_FALSE(strip.isHidden());
    strip.show(WorkKind::exportMovie, std::nullopt);
    EXPECT_TRUE(strip.isHidden());
}

TEST(Notices, LongTextsStayLonger) {
    using namespace std::chrono_literals;
    EXPECT_EQ(noticeDuration(QStringLiteral("Saved.")), 6000ms);
    EXPECT_GT(noticeDuration(QString(300, QLatin1Char('x'))), 15000ms);
}

TEST(Notices, ALongTextIsWrappedInsideTheWindow) {
    QWidget window;
    window.resize(400, 400);
    Notices notices{&window};
    window.show();
    EXPECT_EQ(notices.text(), QString{});
    const QString text = QStringLiteral("No photos were found in “旅行の写真”. ").repeated(8);
    notices.show(text);
    EXPECT_EQ(notices.text(), text);
    EXPECT_TRUE(window.rect().contains(notices.geometry()));
}

TEST(ActionState, TheReasonAgainstACaptionNeedsNoChosenPhoto) {
    Situation now = reviewed();
    EXPECT_EQ(whyNoCaption(now), "");
    now.isCaptioning = true;
    EXPECT_EQ(whyNoCaption(now), "Captions are being generated already");
    now.allowsAICaptions = false;
    now.captionsHelp = "AI captions are turned off";
    EXPECT_EQ(whyNoCaption(now), "AI captions are turned off");
    EXPECT_EQ(actionState(Intent::regenerateCaption, now).help, "AI captions are turned off");
}

TEST(Menus, KeysOfPhotosAreToldAndLeftToThePhotos) {
    const Actions actions;
    for (const Intent intent :
         {Intent::openPhoto, Intent::toggleInFilm, Intent::editCaption, Intent::remove}) {
        EXPECT_FALSE(actions[intent]->shortcut().isEmpty());
        EXPECT_EQ(actions[intent]->shortcutContext(), Qt::WidgetShortcut);
    }
    EXPECT_EQ(actions[Intent::details]->shortcut(), QKeySequence{Qt::Key_F9});
}
