// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Grid/PhotoMenu.h>
#include <Roamly/Window/Grid/ReviewPane.h>

#include <Grid/CountingFeed.h>
#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {

using Foundation::Uuid;
using Grid::PhotoFilter;
using Grid::PhotoMenu;
using Grid::ReviewPane;

class ReviewPaneTest : public ::testing::Test {
protected:
    void SetUp() override {
        pane.resize(900, 640);
        pane.show();
        pane.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
        pane.grid().setFocus();
    }

    const ProjectModel::PhotoItem& photo(std::size_t position) const {
        return document.project().photos.at(position);
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(pane.grid().viewport(), Qt::LeftButton, modifiers, rect(row).center());
    }
    QRect rect(int row) { return pane.grid().visualRect(pane.grid().model()->index(row, 0)); }
    PhotoMenu* openMenu(int row) {
        const QPoint point = rect(row).center();
        QContextMenuEvent event{QContextMenuEvent::Mouse, point, pane.grid().viewport()->mapToGlobal(point)};
        QApplication::sendEvent(pane.grid().viewport(), &event);
        return pane.findChild<PhotoMenu*>();
    }
    static QAction* entry(PhotoMenu& menu, const QString& text) {
        for (QAction* action : menu.actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    Document::ProjectDocument document{GridPhotos::project(20)};
    CountingFeed feed;
    ReviewPane pane{document, feed, QTimeZone::utc()};
};

TEST_F(ReviewPaneTest, SpaceDecidesForTheChosenPhotos) {
    clickRow(0);
    clickRow(1, Qt::ShiftModifier);
    QTest::keyClick(&pane.grid(), Qt::Key_Space);
    pane.refresh();
    EXPECT_FALSE(photo(0).isSelected);
    EXPECT_FALSE(photo(1).isSelected);
    EXPECT_EQ(photo(0).selectionProvenance, ProjectModel::Provenance::user);
    EXPECT_FALSE(pane.photos().photo(0).isSelected);
    EXPECT_EQ(pane.photos().sections()[0].details, "8 of 10 selected");
}

TEST_F(ReviewPaneTest, DeleteRemovesTheChosenPhotos) {
    clickRow(2);
    QTest::keyClick(&pane.grid(), Qt::Key_Delete);
    pane.refresh();
    EXPECT_EQ(document.project().photos.size(), 19U);
    EXPECT_EQ(pane.grid().current(), GridPhotos::id(3));
}

TEST_F(ReviewPaneTest, ATypedCaptionIsTheUsers) {
    clickRow(1);
    QTest::keyClick(&pane.grid(), Qt::Key_F2);
    auto* editor = pane.grid().viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, " Tram 28 ");
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(photo(1).caption, "Tram 28");
    EXPECT_EQ(photo(1).captionProvenance, ProjectModel::Provenance::user);
}

TEST_F(ReviewPaneTest, WhatIsTypedIsKeptWhenItIsNeeded) {
    clickRow(1);
    QTest::keyClick(&pane.grid(), Qt::Key_F2);
    auto* editor = pane.grid().viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "Tram 28");
    pane.grid().finishEditing();
    EXPECT_EQ(photo(1).caption, "Tram 28");
}

TEST_F(ReviewPaneTest, FiltersAndSearches) {
    auto* kind = pane.findChild<QComboBox*>();
    auto* search = pane.filterBar().findChild<QLineEdit*>();
    ASSERT_NE(kind, nullptr);
    ASSERT_NE(search, nullptr);
    EXPECT_EQ(kind->accessibleName(), "Filter");
    QTest::keyClicks(search, "img_7");
    ASSERT_EQ(pane.photos().rowCount(), 1);
    EXPECT_EQ(pane.photos().id(0), GridPhotos::id(7));
    kind->setCurrentIndex(kind->findText("Left out"));
    EXPECT_EQ(pane.photos().rowCount(), 0);
}

TEST_F(ReviewPaneTest, SaysWhenNothingMatchesAndOffersAll) {
    pane.filterBar().setFilter({PhotoFilter::Kind::all, "nowhere"});
    EXPECT_FALSE(pane.grid().isVisible());
    auto* button = pane.findChild<QPushButton*>();
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(pane.photos().rowCount(), 20);
    EXPECT_TRUE(pane.grid().isVisible());
}

TEST_F(ReviewPaneTest, APhotoDecidedUnderAFilterLeavesAndTheKeyboardGoesOn) {
    pane.filterBar().setFilter({PhotoFilter::Kind::inTheFilm, {}});
    clickRow(1);
    QTest::keyClick(&pane.grid(), Qt::Key_Space);
    pane.refresh();
    EXPECT_EQ(pane.photos().rowCount(), 19);
    EXPECT_EQ(pane.grid().current(), GridPhotos::id(2));
}

TEST_F(ReviewPaneTest, ACaptionWhosePhotoLeavesWhileItIsTypedIsKept) {
    clickRow(1);
    QTest::keyClick(&pane.grid(), Qt::Key_F2);
    auto* editor = pane.grid().viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "Tram 28");
    document.edit("Leave Out 1 Photo",
                  [](ProjectModel::Project& project) { project.userSetSelection(false, GridPhotos::id(1)); });
    pane.filterBar().setFilter({PhotoFilter::Kind::inTheFilm, {}});
    QCoreApplication::processEvents();
    EXPECT_EQ(photo(1).caption, "Tram 28");
}

TEST_F(ReviewPaneTest, ZoomControlAndGridFollowEachOther) {
    pane.zoomControl().zoomIn();
    EXPECT_EQ(pane.grid().tileSide(), pane.zoomControl().value());
    pane.grid().setTileSide(128);
    EXPECT_EQ(pane.zoomControl().value(), 128);
}

TEST_F(ReviewPaneTest, TheMenuTellsWhatCannotBeDoneAndWhy) {
    pane.setWhyNoCaption("Captions are being generated");
    PhotoMenu* menu = openMenu(0);
    ASSERT_NE(menu, nullptr);
    const QAction* regenerate = entry(*menu, "Regenerate Caption");
    ASSERT_NE(regenerate, nullptr);
    EXPECT_FALSE(regenerate->isEnabled());
    EXPECT_EQ(regenerate->toolTip(), "Captions are being generated");
    ASSERT_NE(entry(*menu, "Show in Files"), nullptr);
    EXPECT_TRUE(entry(*menu, "Show in Files")->isEnabled());
    EXPECT_EQ(entry(*menu, "Compare Group"), nullptr);
    menu->close();
}

TEST_F(ReviewPaneTest, TheMenusWishesReachTheProjectOrTheWindow) {
    QSignalSpy places{&pane, &ReviewPane::placeRequested};
    QSignalSpy captions{&pane, &ReviewPane::captionRegenerationRequested};
    clickRow(0);
    clickRow(1, Qt::ShiftModifier);
    PhotoMenu* menu = openMenu(1);
    ASSERT_NE(menu, nullptr);
    EXPECT_FALSE(entry(*menu, "Regenerate Caption")->isEnabled());
    entry(*menu, "Set Place…")->trigger();
    entry(*menu, "Leave Out")->trigger();
    ASSERT_EQ(places.size(), 1);
    EXPECT_EQ(places[0][0].value<std::vector<Uuid>>(), (std::vector{GridPhotos::id(0), GridPhotos::id(1)}));
    EXPECT_FALSE(photo(0).isSelected);
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    pane.refresh();

    menu = openMenu(5);
    ASSERT_NE(menu, nullptr);
    entry(*menu, "Regenerate Caption")->trigger();
    ASSERT_EQ(captions.size(), 1);
    EXPECT_EQ(captions[0][0].value<Uuid>(), GridPhotos::id(5));
    entry(*menu, "Remove from Project")->trigger();
    EXPECT_EQ(document.project().photos.size(), 19U);
    menu->close();
}

TEST_F(ReviewPaneTest, ALoupeTakesTheGridsPlaceAndDetailsStandBesideIt) {
    auto* loupe = new QLabel{"Loupe"};
    auto* details = new QLabel{"Details"};
    pane.setLoupe(loupe);
    pane.setDetails(details);
    EXPECT_FALSE(details->isVisible());
    pane.showDetails(true);
    EXPECT_TRUE(details->isVisible());
    pane.showLoupe(true);
    EXPECT_TRUE(loupe->isVisible());
    EXPECT_FALSE(pane.grid().isVisible());
    pane.showLoupe(false);
    EXPECT_TRUE(pane.grid().isVisible());
    EXPECT_TRUE(pane.grid().hasFocus());
}

} // namespace
