// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Grid/CloseUp.h>
#include <Roamly/Window/Grid/Comparison.h>
#include <Roamly/Window/Grid/DetailsPanel.h>
#include <Roamly/Window/Grid/Loupe.h>
#include <Roamly/Window/Grid/ReviewPane.h>

#include <Grid/CountingFeed.h>
#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <atomic>
#include <memory>

namespace {

using GridPhotos::id;

/// Twenty photos, of which 2 to 5 are one group and 3 is its best.
ProjectModel::Project trip() {
    ProjectModel::Project project = GridPhotos::project(20);
    for (const std::size_t number : {2U, 3U, 4U, 5U}) {
        project.photos[number].clusterID = id(99);
        project.photos[number].qualityScore = number == 3 ? 0.82 : 0.6 + 0.02 * static_cast<double>(number);
    }
    return project;
}

class CloseUpTest : public ::testing::Test {
protected:
    void SetUp() override {
        feed.haveAll();
        subscription = document.addListener([this](const Document::ProjectDifference&) {
            pane->refresh();
            closeUp->refresh();
        });
        pane->resize(1100, 720);
        pane->show();
        pane->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(pane.get()));
        pane->grid().goTo(id(2));
        pane->grid().setFocus();
    }
    void TearDown() override { pane.reset(); }

    const ProjectModel::PhotoItem& photo(std::size_t position) const {
        return document.project().photos.at(position);
    }
    template <typename View>
    View& view() const {
        return *pane->findChild<View*>();
    }
    std::optional<Foundation::Image> load(int pixels) {
        largest = std::max(largest.load(), pixels);
        const int height = pixels * 2 / 3;
        Foundation::Image image{pixels, height, {}};
        image.pixels.assign(static_cast<std::size_t>(pixels) * static_cast<std::size_t>(height) * 3, 200);
        return image;
    }

    std::atomic<int> largest = 0;
    Document::ProjectDocument document{trip()};
    CountingFeed feed;
    std::unique_ptr<Grid::ReviewPane> pane =
        std::make_unique<Grid::ReviewPane>(document, feed, QTimeZone::utc());
    std::unique_ptr<Grid::CloseUp> closeUp = std::make_unique<Grid::CloseUp>(
        *pane, document, feed, [this](const ProjectModel::PhotoRef&, int pixels) { return load(pixels); },
        QTimeZone::utc());
    Document::ProjectDocument::Subscription subscription;
};

TEST_F(CloseUpTest, ReturnShowsThePhotoLargeAndEscGoesBackToIt) {
    QTest::keyClick(&pane->grid(), Qt::Key_Return);
    auto& loupe = view<Grid::Loupe>();
    ASSERT_TRUE(loupe.isVisible());
    EXPECT_TRUE(loupe.hasFocus());
    EXPECT_EQ(loupe.position(), "3 of 20");
    QTest::keyClick(&loupe, Qt::Key_Right);
    QTest::keyClick(&loupe, Qt::Key_Right);
    EXPECT_EQ(loupe.current(), id(4));
    QTest::keyClick(&loupe, Qt::Key_Left);
    QTest::keyClick(&loupe, Qt::Key_Escape);
    EXPECT_FALSE(loupe.isVisible());
    EXPECT_EQ(pane->grid().current(), id(3));
    EXPECT_TRUE(pane->grid().hasFocus());
}

TEST_F(CloseUpTest, TheLoupeStopsAtBothEnds) {
    closeUp->openPhoto(id(0));
    auto& loupe = view<Grid::Loupe>();
    QTest::keyClick(&loupe, Qt::Key_Left);
    EXPECT_EQ(loupe.current(), id(0));
    QTest::keyClick(&loupe, Qt::Key_End);
    QTest::keyClick(&loupe, Qt::Key_Right);
    EXPECT_EQ(loupe.position(), "20 of 20");
}

TEST_F(CloseUpTest, ThePhotoIsDecodedForTheLoupesOwnPixels) {
    closeUp->openPhoto(id(2));
    auto& loupe = view<Grid::Loupe>();
    // The loader's grey takes the place of the thumbnail's blue.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return loupe.grab().toImage().pixelColor(loupe.width() / 2, loupe.height() / 2) ==
               QColor(200, 200, 200);
    }));
    EXPECT_LE(largest, 1100);
    EXPECT_GT(largest, 900);
}

TEST_F(CloseUpTest, SpaceDecidesInTheLoupe) {
    closeUp->openPhoto(id(7));
    auto& loupe = view<Grid::Loupe>();
    EXPECT_TRUE(loupe.accessibleDescription().contains("in the film"));
    QTest::keyClick(&loupe, Qt::Key_Space);
    EXPECT_FALSE(photo(7).isSelected);
    EXPECT_EQ(photo(7).selectionProvenance, ProjectModel::Provenance::user);
    EXPECT_TRUE(loupe.accessibleDescription().contains("left out"));
}

TEST_F(CloseUpTest, AfterARemovalTheLoupeShowsTheNextPhoto) {
    closeUp->openPhoto(id(7));
    auto& loupe = view<Grid::Loupe>();
    QTest::keyClick(&loupe, Qt::Key_Delete);
    EXPECT_EQ(document.project().photos.size(), 19U);
    EXPECT_EQ(loupe.current(), id(8));
    EXPECT_EQ(loupe.position(), "8 of 19");
}

TEST_F(CloseUpTest, AGroupStandsSideBySideAndKeysDecide) {
    closeUp->compareGroup(id(4));
    auto& comparison = view<Grid::Comparison>();
    ASSERT_EQ(comparison.tiles().size(), 4U);
    EXPECT_EQ(comparison.tiles()[1]->shot().place, "Best of 4 similar shots");
    EXPECT_EQ(comparison.tiles()[2]->shot().quality, "Quality 68 of 100, 14 below the best");
    EXPECT_TRUE(comparison.tiles()[0]->hasFocus());
    Grid::ShotTile* const second = comparison.tiles()[1];
    QTest::keyClick(comparison.tiles()[0], Qt::Key_2);
    EXPECT_FALSE(photo(3).isSelected);
    EXPECT_FALSE(second->isChecked());
    EXPECT_EQ(comparison.tiles()[1], second);
    QTest::keyClick(comparison.tiles()[0], Qt::Key_2);
    EXPECT_TRUE(photo(3).isSelected);
    QTest::keyClick(comparison.tiles()[0], Qt::Key_9);
    QTest::keyClick(second, Qt::Key_Space);
    EXPECT_FALSE(photo(3).isSelected);
    QTest::keyClick(second, Qt::Key_Escape);
    EXPECT_FALSE(comparison.isVisible());
    EXPECT_TRUE(pane->grid().isVisible());
}

TEST_F(CloseUpTest, FromTheLoupeTheComparisonLeadsBackToTheLoupe) {
    closeUp->openPhoto(id(3));
    auto& loupe = view<Grid::Loupe>();
    Q_EMIT loupe.groupRequested(id(3));
    EXPECT_FALSE(loupe.isVisible());
    EXPECT_TRUE(closeUp->leave());
    EXPECT_TRUE(loupe.isVisible());
    EXPECT_TRUE(closeUp->leave());
    EXPECT_FALSE(closeUp->leave());
}

TEST_F(CloseUpTest, APhotoWithoutAGroupIsNotCompared) {
    closeUp->compareGroup(id(9));
    EXPECT_FALSE(view<Grid::Comparison>().isVisible());
}

TEST_F(CloseUpTest, AComparisonWhoseGroupIsDissolvedEnds) {
    closeUp->compareGroup(id(4));
    document.edit("Reset Analysis", [](ProjectModel::Project& project) { project.resetAnalysisSelection(); });
    EXPECT_FALSE(view<Grid::Comparison>().isVisible());
}

TEST_F(CloseUpTest, DetailsFollowThePhotoThatIsChosen) {
    closeUp->showDetails(true);
    auto& details = view<Grid::DetailsPanel>();
    const auto tells = [&details](const QString& text) {
        for (const QLabel* label : details.findChildren<QLabel*>()) {
            if (label->isVisible() && QString{label->text()}.remove(QChar{0x200B}) == text)
                return true;
        }
        return false;
    };
    EXPECT_TRUE(tells("IMG_2.jpg"));
    EXPECT_TRUE(tells("City 0"));
    EXPECT_TRUE(tells("from the photo’s GPS position"));
    EXPECT_TRUE(tells("4th of 4 similar shots"));
    pane->grid().goTo(id(12));
    EXPECT_TRUE(tells("IMG_12.jpg"));
    EXPECT_FALSE(tells("4th of 4 similar shots"));
    pane->grid().selectAll();
    EXPECT_TRUE(tells("20 photos chosen"));
}

TEST_F(CloseUpTest, ACaptionOfSeveralLinesIsOneStep) {
    closeUp->showDetails(true);
    auto& caption = view<QPlainTextEdit>();
    caption.setFocus();
    QTest::keyClicks(&caption, "Tram 28");
    QTest::keyClick(&caption, Qt::Key_Return);
    QTest::keyClicks(&caption, "up the hill");
    EXPECT_FALSE(photo(2).caption);
    pane->grid().goTo(id(3));
    EXPECT_EQ(photo(2).caption, "Tram 28\nup the hill");
    EXPECT_EQ(photo(2).captionProvenance, ProjectModel::Provenance::user);
    EXPECT_EQ(caption.toPlainText(), "");
    document.undo();
    EXPECT_FALSE(photo(2).caption);
    EXPECT_FALSE(document.undoName());
}

TEST_F(CloseUpTest, EscTakesBackWhatIsTyped) {
    closeUp->showDetails(true);
    auto& caption = view<QPlainTextEdit>();
    caption.setFocus();
    QTest::keyClicks(&caption, "Tram");
    QTest::keyClick(&caption, Qt::Key_Escape);
    pane->grid().setFocus();
    EXPECT_FALSE(photo(2).caption);
    EXPECT_EQ(caption.toPlainText(), "");
}

TEST_F(CloseUpTest, WhatHappensMeanwhileLeavesTheTypedCaptionAlone) {
    closeUp->showDetails(true);
    auto& caption = view<QPlainTextEdit>();
    caption.setFocus();
    QTest::keyClicks(&caption, "Tram");
    document.edit("Leave Out 1 Photo",
                  [](ProjectModel::Project& project) { project.userSetSelection(false, id(2)); });
    EXPECT_EQ(caption.toPlainText(), "Tram");
    closeUp->finishEditing();
    EXPECT_EQ(photo(2).caption, "Tram");
}

} // namespace
