// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoDrag.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>

#include <Grid/CountingFeed.h>
#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>
#include <memory>

namespace {

using Foundation::Uuid;
using Grid::CellAreas;
using Grid::PhotoGridView;
using Grid::PhotoListModel;
using ProjectModel::Project;

/// A grid of 40 photos in sections of ten, on screen and with the keyboard.
class PhotoGridViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        project = GridPhotos::project(40);
        model.show(project);
        view.resize(700, 600);
        view.show();
        view.activateWindow();
        view.setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    QRect rect(int row) const { return view.visualRect(model.index(row)); }
    CellAreas areas(int row) const { return CellAreas::of(rect(row), {}, false); }
    void click(const QPoint& point, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, point);
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {}) {
        click(areas(row).tile.center(), modifiers);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }
    std::vector<int> chosen() const {
        std::vector<int> rows;
        for (const Uuid& id : view.chosen())
            rows.push_back(*model.rowOf(id));
        return rows;
    }
    int current() const { return view.currentIndex().row(); }
    static std::vector<int> range(int first, int last) {
        std::vector<int> rows;
        for (int row = first; row <= last; ++row)
            rows.push_back(row);
        return rows;
    }
    std::vector<Uuid> ids(const std::vector<int>& rows) const {
        std::vector<Uuid> result;
        for (const int row : rows)
            result.push_back(model.id(row));
        return result;
    }
    QLineEdit* editor() { return view.viewport()->findChild<QLineEdit*>(); }
    /// The editor's wish to close comes through the event loop.
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Project project;
    PhotoListModel model{QTimeZone::utc()};
    CountingFeed feed;
    PhotoGridView view{model, feed};
};

using Rows = std::vector<int>;

TEST_F(PhotoGridViewTest, APlainClickChoosesOnePhotoAndModifiersAddAndTakeAway) {
    clickRow(1);
    EXPECT_EQ(chosen(), Rows{1});
    clickRow(3, Qt::ControlModifier);
    EXPECT_EQ(chosen(), (Rows{1, 3}));
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(chosen(), Rows{3});
    clickRow(0);
    EXPECT_EQ(chosen(), Rows{0});
}

TEST_F(PhotoGridViewTest, ShiftChoosesARangeAlongTheFlowAcrossSections) {
    clickRow(2);
    view.scrollTo(model.index(12));
    clickRow(12, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), range(2, 12));
    clickRow(11, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), range(2, 11));
}

TEST_F(PhotoGridViewTest, AClickAmongSeveralChosenChoosesThatOneAtTheRelease) {
    clickRow(0);
    clickRow(2, Qt::ShiftModifier);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, areas(1).tile.center());
    EXPECT_EQ(chosen(), range(0, 2));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, areas(1).tile.center());
    EXPECT_EQ(chosen(), Rows{1});
}

TEST_F(PhotoGridViewTest, AClickBesidePhotosChoosesNothing) {
    clickRow(1);
    click({rect(0).right() + 4, rect(0).center().y()});
    EXPECT_EQ(chosen(), Rows{});
}

TEST_F(PhotoGridViewTest, AClickOnAHeaderChoosesItsPhotos) {
    click({40, 20});
    EXPECT_EQ(chosen(), range(0, 9));
    view.verticalScrollBar()->setValue(600);
    const int secondHeader = rect(10).top() - 20;
    ASSERT_GT(secondHeader, view.flowLayout().headerHeight());
    ASSERT_LT(secondHeader, view.viewport()->height());
    click({40, secondHeader}, Qt::ControlModifier);
    EXPECT_EQ(chosen(), range(0, 19));
    click({40, secondHeader});
    EXPECT_EQ(chosen(), range(10, 19));
}

TEST_F(PhotoGridViewTest, TheHeaderStaysOnTopWhileItsPhotosScroll) {
    view.verticalScrollBar()->setValue(60);
    click({40, 8});
    EXPECT_EQ(chosen(), range(0, 9));
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    click({40, 8});
    EXPECT_EQ(chosen(), range(30, 39));
}

TEST_F(PhotoGridViewTest, AFrameChoosesThePhotosItTouches) {
    const QPoint from{4, rect(0).center().y()};
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
    QTest::mouseMove(view.viewport(), from + QPoint{40, 0});
    const QPoint to = rect(1).center();
    QMouseEvent move{QEvent::MouseMove, to, view.viewport()->mapToGlobal(to), Qt::NoButton,
                     Qt::LeftButton,    {}};
    QApplication::sendEvent(view.viewport(), &move);
    EXPECT_EQ(chosen(), (Rows{0, 1}));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
    EXPECT_EQ(chosen(), (Rows{0, 1}));
}

TEST_F(PhotoGridViewTest, AFrameWithControlAddsToWhatIsChosen) {
    clickRow(2);
    const QPoint from{4, rect(0).center().y()};
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::ControlModifier, from);
    const QPoint to = rect(0).center();
    QMouseEvent move{QEvent::MouseMove,  to, view.viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::ControlModifier};
    QApplication::sendEvent(view.viewport(), &move);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::ControlModifier, to);
    EXPECT_EQ(chosen(), (Rows{0, 2}));
}

TEST_F(PhotoGridViewTest, ArrowsWalkAcrossSectionsAndBringThePhotoIntoView) {
    const int columns = view.flowLayout().columns();
    clickRow(0);
    key(Qt::Key_Right);
    EXPECT_EQ(current(), 1);
    EXPECT_EQ(chosen(), Rows{1});
    key(Qt::Key_Down);
    EXPECT_EQ(current(), 1 + columns);
    clickRow(9);
    key(Qt::Key_Right);
    EXPECT_EQ(current(), 10);
    key(Qt::Key_End);
    EXPECT_EQ(current(), 39);
    EXPECT_TRUE(view.viewport()->rect().contains(rect(39)));
    key(Qt::Key_PageUp);
    EXPECT_LT(current(), 39);
    EXPECT_TRUE(view.viewport()->rect().contains(rect(current())));
    key(Qt::Key_Home);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    key(Qt::Key_Left);
    EXPECT_EQ(current(), 0);
}

TEST_F(PhotoGridViewTest, ShiftAndControlWithArrowsExtendAndMove) {
    clickRow(1);
    key(Qt::Key_Right, Qt::ShiftModifier);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), range(1, 3));
    key(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), range(1, 2));
    key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(current(), 3);
    EXPECT_EQ(chosen(), range(1, 2));
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(chosen(), range(1, 3));
}

TEST_F(PhotoGridViewTest, ArrowsFollowTheInterfaceFromRightToLeft) {
    view.setLayoutDirection(Qt::RightToLeft);
    clickRow(0);
    EXPECT_GT(rect(0).left(), rect(1).left());
    key(Qt::Key_Left);
    EXPECT_EQ(current(), 1);
}

TEST_F(PhotoGridViewTest, ControlAChoosesAllAndEscapeNone) {
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(chosen(), range(0, 39));
    key(Qt::Key_Escape);
    EXPECT_EQ(chosen(), Rows{});
}

TEST_F(PhotoGridViewTest, KeysTellWhatIsWishedForTheChosenPhotos) {
    QSignalSpy decided{&view, &PhotoGridView::decisionToggled};
    QSignalSpy removed{&view, &PhotoGridView::removalRequested};
    QSignalSpy loupe{&view, &PhotoGridView::loupeRequested};
    clickRow(1);
    clickRow(2, Qt::ShiftModifier);
    key(Qt::Key_Space);
    ASSERT_EQ(decided.size(), 1);
    EXPECT_EQ(decided[0][0].value<std::vector<Uuid>>(), ids({1, 2}));
    key(Qt::Key_Delete);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0][0].value<std::vector<Uuid>>(), ids({1, 2}));
    key(Qt::Key_Return);
    ASSERT_EQ(loupe.size(), 1);
    EXPECT_EQ(loupe[0][0].value<Uuid>(), model.id(2));
}

TEST_F(PhotoGridViewTest, LettersAreLeftToTheWindow) {
    clickRow(0);
    key(Qt::Key_I);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(PhotoGridViewTest, TheCheckDecidesItsOwnPhotoAndLeavesTheChoice) {
    QSignalSpy decided{&view, &PhotoGridView::decisionToggled};
    clickRow(0);
    click(areas(2).check.center());
    ASSERT_EQ(decided.size(), 1);
    EXPECT_EQ(decided[0][0].value<std::vector<Uuid>>(), ids({2}));
    EXPECT_EQ(chosen(), Rows{0});
}

TEST_F(PhotoGridViewTest, ADoubleClickAsksForTheLoupeAndTheStackForItsGroup) {
    QSignalSpy loupe{&view, &PhotoGridView::loupeRequested};
    QSignalSpy group{&view, &PhotoGridView::groupRequested};
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, areas(1).tile.center());
    ASSERT_EQ(loupe.size(), 1);
    EXPECT_EQ(loupe[0][0].value<Uuid>(), model.id(1));
    project.photos[0].clusterID = project.photos[1].clusterID = GridPhotos::id(99);
    model.show(project);
    click({rect(0).right() - CellAreas::badgeInset - 10, rect(0).top() + CellAreas::badgeInset + 10});
    ASSERT_EQ(group.size(), 1);
    EXPECT_EQ(group[0][0].value<Uuid>(), model.id(0));
}

TEST_F(PhotoGridViewTest, F2EditsTheCaptionAndReturnCommitsIt) {
    QSignalSpy edited{&model, &PhotoListModel::captionEdited};
    clickRow(1);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    QTest::keyClicks(editor(), "Tram 28");
    QTest::keyClick(editor(), Qt::Key_Return);
    settle();
    ASSERT_EQ(edited.size(), 1);
    EXPECT_EQ(edited[0][0].value<Uuid>(), model.id(1));
    EXPECT_EQ(edited[0][1].toString(), "Tram 28");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_TRUE(view.hasFocus());
}

TEST_F(PhotoGridViewTest, AClickOnTheCaptionEditsItAndEscapeReverts) {
    QSignalSpy edited{&model, &PhotoListModel::captionEdited};
    click(areas(1).caption.center());
    ASSERT_NE(editor(), nullptr);
    QTest::keyClicks(editor(), "Tram 28");
    QTest::keyClick(editor(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PhotoGridViewTest, TabCommitsAndGoesToTheNextPhotosCaption) {
    QSignalSpy edited{&model, &PhotoListModel::captionEdited};
    clickRow(9);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    QTest::keyClicks(editor(), "Last of its section");
    QTest::keyClick(editor(), Qt::Key_Tab);
    settle();
    ASSERT_EQ(edited.size(), 1);
    EXPECT_EQ(current(), 10);
    ASSERT_NE(editor(), nullptr);
    EXPECT_TRUE(view.viewport()->rect().contains(editor()->geometry()));
    EXPECT_TRUE(rect(10).adjusted(-4, 0, 4, 4).contains(editor()->geometry()));
}

TEST_F(PhotoGridViewTest, ACaptionThatWasNotChangedIsNotHandedOn) {
    project.photos[1].caption = "Tram 28";
    model.show(project);
    QSignalSpy edited{&model, &PhotoListModel::captionEdited};
    clickRow(1);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "Tram 28");
    QTest::keyClick(editor(), Qt::Key_Return);
    settle();
    EXPECT_EQ(edited.size(), 0);
}

TEST_F(PhotoGridViewTest, WhatIsTypedStaysWhenThePhotoChangesMeanwhile) {
    clickRow(1);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    QTest::keyClicks(editor(), "Tram");
    project.photos[1].location.reset();
    model.show(project);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "Tram");
}

TEST_F(PhotoGridViewTest, AfterARemovalTheKeyboardIsOnThePhotoThatFollows) {
    clickRow(3);
    clickRow(4, Qt::ShiftModifier);
    const Uuid next = model.id(5);
    project.removePhotos({model.id(3), model.id(4)});
    model.show(project);
    EXPECT_EQ(view.current(), next);
    EXPECT_EQ(chosen(), Rows{3});
}

TEST_F(PhotoGridViewTest, AfterAScatteredRemovalTooAndAtTheEndOnTheLast) {
    std::set<Uuid> removed;
    for (int row = 1; row < 40; row += 2)
        removed.insert(model.id(row));
    clickRow(3);
    const Uuid next = model.id(4);
    project.removePhotos(removed);
    model.show(project);
    EXPECT_EQ(view.current(), next);

    key(Qt::Key_End);
    const Uuid last = model.id(model.rowCount() - 2);
    project.removePhotos({*view.current()});
    model.show(project);
    EXPECT_EQ(view.current(), last);
}

TEST_F(PhotoGridViewTest, TheChoiceFollowsPhotosThatMove) {
    clickRow(0);
    clickRow(1, Qt::ShiftModifier);
    const std::vector<Uuid> before = view.chosen();
    project.userMovePhotos({0, 1}, 20);
    model.show(project);
    EXPECT_EQ(view.chosen(), before);
    EXPECT_EQ(chosen(), (Rows{18, 19}));
}

TEST_F(PhotoGridViewTest, PhotosDroppedFromElsewhereAreNotMoved) {
    QSignalSpy moved{&view, &PhotoGridView::moveRequested};
    const std::vector<Uuid> photos = ids({5, 6});
    const std::unique_ptr<QMimeData> data = Grid::PhotoDrag::mimeData(photos);
    EXPECT_TRUE(Grid::PhotoDrag::holdsPhotos(*data));
    EXPECT_EQ(Grid::PhotoDrag::photos(*data), photos);
    // Photos of another window are not this project's.
    const QPoint where = rect(1).center() - QPoint{20, 0};
    QDropEvent drop{where, Qt::MoveAction, data.get(), Qt::LeftButton, {}};
    QApplication::sendEvent(view.viewport(), &drop);
    EXPECT_EQ(moved.size(), 0);
}

TEST_F(PhotoGridViewTest, DroppedFilesAreHandedOn) {
    QSignalSpy dropped{&view, &PhotoGridView::urlsDropped};
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/photos/Rome")});
    QDragEnterEvent enter{{100, 100}, Qt::CopyAction, &data, Qt::LeftButton, {}};
    QApplication::sendEvent(view.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop{QPointF{100, 100}, Qt::CopyAction, &data, Qt::LeftButton, {}};
    QApplication::sendEvent(view.viewport(), &drop);
    ASSERT_EQ(dropped.size(), 1);
    EXPECT_EQ(dropped[0][0].value<QList<QUrl>>().front().toLocalFile(), "/photos/Rome");
}

TEST_F(PhotoGridViewTest, AsksForThumbnailsOfWhatIsOnScreenAndDrawsOnlyWhatCame) {
    view.repaint();
    ASSERT_FALSE(feed.visible().empty());
    EXPECT_EQ(feed.visible().front(), model.id(0));
    EXPECT_EQ(feed.asked(model.id(39)), 0);
    const int others = feed.asked(model.id(1));
    const auto colourOf = [&](int row) {
        return view.viewport()->grab().toImage().pixelColor(rect(row).center());
    };
    const QColor waiting = colourOf(0);
    EXPECT_NE(waiting, feed.colour);
    settle();
    const int askedBefore = feed.asked(model.id(1));
    EXPECT_GE(askedBefore, others);
    feed.deliver(model.id(0));
    settle();
    EXPECT_EQ(feed.asked(model.id(1)), askedBefore);
    const QPoint middle{rect(0).center().x(), rect(0).top() + rect(0).width() / 2};
    EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(middle), feed.colour);

    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    view.repaint();
    EXPECT_EQ(feed.visible().back(), model.id(39));
}

TEST_F(PhotoGridViewTest, ZoomingKeepsThePhotoAtTheTop) {
    view.scrollTo(model.index(20), QAbstractItemView::PositionAtTop);
    const int topBefore = rect(20).top();
    view.setTileSide(110);
    settle();
    EXPECT_EQ(rect(20).top(), topBefore);
    EXPECT_GT(view.flowLayout().columns(), 4);
    view.setTileSide(10);
    EXPECT_EQ(view.tileSide(), PhotoGridView::smallestTile);
}

} // namespace
