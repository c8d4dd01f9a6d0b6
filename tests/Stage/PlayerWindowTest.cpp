// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/PlayerControls.h>
#include <Roamly/Window/Stage/PlayerWindow.h>
#include <Roamly/Window/Stage/PositionSlider.h>

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <atomic>
#include <cmath>
#include <cstring>
#include <memory>
#include <variant>

using Stage::PlayerWindow;

namespace {

constexpr double photoDuration = 5;
constexpr int photoCount = 3;
constexpr double cardDuration = 2;

/// Frames of one grey, which grows with the film's time.
class GreyFrames : public Frames::FrameSource {
public:
    explicit GreyFrames(std::atomic<int>& living)
        : m_living(living) {
        ++m_living;
    }
    ~GreyFrames() override { --m_living; }

    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::RenderState& state,
                                                  Frames::FrameSize size) override {
        auto frame = std::make_shared<Frames::YuvFrame>(size);
        frame->fillBlack();
        for (int y = 0; y < frame->planeHeight(0); ++y)
            std::memset(frame->plane(0) + y * frame->stride(0), luma(state),
                        static_cast<std::size_t>(size.width));
        return frame;
    }
    [[nodiscard]] std::set<Foundation::Uuid> failedPhotoIDs() const override { return {}; }

    [[nodiscard]] static int luma(const Timeline::RenderState& state) {
        const auto* const photo = std::get_if<Timeline::PhotoState>(&state);
        if (!photo)
            return 16;
        const double time = photo->current.start + photo->progress * photo->current.duration;
        return static_cast<int>(std::lround(40 + 10 * time));
    }

private:
    std::atomic<int>& m_living;
};

Timeline::SlideshowTimeline film() {
    Timeline::SlideshowTimeline timeline;
    timeline.items.emplace_back(Timeline::ChapterSegment{"Lisbon, Portugal", 0, cardDuration});
    for (int i = 0; i < photoCount; ++i) {
        Timeline::PhotoSegment photo;
        photo.photoID = Foundation::Uuid::random();
        photo.start = cardDuration + i * photoDuration;
        photo.duration = photoDuration;
        if (i == 2)
            photo.overlay.chapterTitle = "京都, 日本";
        timeline.items.emplace_back(photo);
    }
    timeline.totalDuration = cardDuration + photoCount * photoDuration;
    return timeline;
}

class PlayerWindowTest : public testing::Test {
protected:
    PlayerWindowTest() {
        Stage::Film what{.timeline = film(),
                         .crossfade = 0,
                         .frames = [this] { return std::make_unique<GreyFrames>(living); },
                         .music = {},
                         .title = QStringLiteral("Lisbon")};
        Stage::PlayerServices services{.now = [this] { return now; },
                                       .keepAwake =
                                           [this](const QString&) {
                                               auto token = std::make_shared<int>(0);
                                               awake = token;
                                               return token;
                                           }};
        window = std::make_unique<PlayerWindow>(std::move(what), std::move(services));
    }

    template <typename Condition>
    static void waitFor(const Condition& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000));
    }
    void startPlaying(double from = 0) {
        window->start(from, true);
        waitFor([this] { return window->model().isPlaying(); });
    }
    /// Lets the clock run on and the window see it.
    void pass(double seconds) {
        const double goal = window->model().elapsed() + seconds;
        now += seconds;
        waitFor([&] { return !window->model().isPlaying() || window->model().elapsed() >= goal - 1e-9; });
    }
    [[nodiscard]] int grey() const {
        return window->picture().isNull() ? -1 : qRed(window->picture().pixel(1, 1));
    }
    /// What the window shows of the film at a time.
    [[nodiscard]] static int greyAt(double time) {
        return static_cast<int>(std::lround((40 + 10 * time - 16) * 255 / 219));
    }
    [[nodiscard]] QToolButton* button(const QString& name) const {
        for (QToolButton* const one : window->findChildren<QToolButton*>()) {
            if (one->accessibleName() == name)
                return one;
        }
        return nullptr;
    }
    [[nodiscard]] Stage::PositionSlider* slider() const {
        return window->findChild<Stage::PositionSlider*>();
    }

    double now = 100;
    std::atomic<int> living = 0;
    std::weak_ptr<int> awake;
    std::unique_ptr<PlayerWindow> window;
};

} // namespace

TEST_F(PlayerWindowTest, PlaysAsSoonAsItsFirstPictureIsThere) {
    EXPECT_FALSE(window->model().isPlaying());
    startPlaying();
    EXPECT_FALSE(window->picture().isNull());
    EXPECT_EQ(window->model().elapsed(), 0);
    EXPECT_FALSE(awake.expired());
    pass(3);
    EXPECT_EQ(window->model().elapsed(), 3);
}

TEST_F(PlayerWindowTest, OpensOnTheWholeScreenOrInAWindow) {
    window->start(0, false);
    EXPECT_TRUE(window->isFullScreen());
    QTest::keyClick(window.get(), Qt::Key_F);
    EXPECT_FALSE(window->isFullScreen());
}

TEST_F(PlayerWindowTest, BeginsWhereItIsToldTo) {
    startPlaying(7.5);
    EXPECT_EQ(window->model().elapsed(), 7.5);
    waitFor([this] { return grey() == greyAt(7.5); });
}

TEST_F(PlayerWindowTest, ShowsTheFrameThatIsDue) {
    startPlaying(4);
    pass(2);
    // Of all frames that were drawn, the newest that is not ahead of its time.
    waitFor([this] { return std::abs(grey() - greyAt(6)) <= 1; });
}

TEST_F(PlayerWindowTest, AJumpShowsItsVeryFrameWhilePaused) {
    startPlaying();
    QTest::keyClick(window.get(), Qt::Key_Space);
    ASSERT_FALSE(window->model().isPlaying());
    EXPECT_TRUE(awake.expired());
    Q_EMIT slider()->wanted(9.25);
    EXPECT_EQ(window->model().elapsed(), 9.25);
    waitFor([this] { return grey() == greyAt(9.25); });
}

TEST_F(PlayerWindowTest, IsPlayedByKeys) {
    startPlaying();
    pass(3);
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_FALSE(window->model().isPlaying());
    QTest::keyClick(window.get(), Qt::Key_Right);
    EXPECT_EQ(window->model().elapsed(), cardDuration + photoDuration);
    QTest::keyClick(window.get(), Qt::Key_Left);
    EXPECT_EQ(window->model().elapsed(), cardDuration);
    QTest::keyClick(window.get(), Qt::Key_Home);
    EXPECT_EQ(window->model().elapsed(), 0);
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_TRUE(window->model().isPlaying());
}

TEST_F(PlayerWindowTest, IsPlayedByItsButtons) {
    startPlaying(3);
    ASSERT_TRUE(button(QStringLiteral("Pause")));
    button(QStringLiteral("Pause"))->click();
    EXPECT_FALSE(window->model().isPlaying());
    EXPECT_TRUE(button(QStringLiteral("Play")));
    button(QStringLiteral("Next"))->click();
    EXPECT_EQ(window->model().elapsed(), cardDuration + photoDuration);
    button(QStringLiteral("Previous"))->click();
    EXPECT_EQ(window->model().elapsed(), cardDuration);
    EXPECT_FALSE(button(QStringLiteral("Mute"))->isEnabled());
    button(QStringLiteral("Close"))->click();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PlayerWindowTest, TheSliderGoesWhereItIsPressed) {
    startPlaying();
    QTest::mouseClick(slider(), Qt::LeftButton, {}, slider()->rect().center());
    EXPECT_NEAR(window->model().elapsed(), film().totalDuration / 2, 0.05);
    slider()->setFocus();
    const double before = window->model().elapsed();
    QTest::keyClick(slider(), Qt::Key_Right);
    EXPECT_NEAR(window->model().elapsed(), before + 5, 0.01);
}

TEST_F(PlayerWindowTest, TheSliderKnowsTheChapters) {
    ASSERT_EQ(slider()->chapters().size(), 2U);
    EXPECT_EQ(slider()->chapters()[0].start, 0);
    EXPECT_EQ(slider()->chapters()[1].start, cardDuration + 2 * photoDuration);
    EXPECT_EQ(slider()->chapters()[1].title, QStringLiteral("京都, 日本"));
}

TEST_F(PlayerWindowTest, PausesAtTheEndAndBeginsAgain) {
    startPlaying(16);
    pass(60);
    EXPECT_FALSE(window->model().isPlaying());
    EXPECT_EQ(window->model().elapsed(), film().totalDuration);
    EXPECT_TRUE(awake.expired());
    QTest::keyClick(window.get(), Qt::Key_Space);
    EXPECT_TRUE(window->model().isPlaying());
    EXPECT_EQ(window->model().elapsed(), 0);
}

TEST_F(PlayerWindowTest, TheControlsGoAndComeBackWithThePointer) {
    startPlaying();
    auto* const controls = window->findChild<Stage::PlayerControls*>();
    EXPECT_TRUE(controls->isVisible());
    waitFor([&] { return !controls->isVisible(); });
    EXPECT_EQ(window->cursor().shape(), Qt::BlankCursor);
    QTest::mouseMove(window.get(), {100, 100});
    QTest::mouseMove(window.get(), {120, 100});
    waitFor([&] { return controls->isVisible(); });
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(PlayerWindowTest, EscClosesItAndNothingGoesOn) {
    startPlaying();
    EXPECT_EQ(living, 1);
    QSignalSpy closed(window.get(), &PlayerWindow::closed);
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(living, 0);
    EXPECT_TRUE(awake.expired());
    waitFor([&] { return closed.count() == 1; });
}

TEST_F(PlayerWindowTest, ThePictureIsSixteenToNineOnBlack) {
    startPlaying(12);
    window->resize(800, 800);
    waitFor([this] { return window->picture().size() == QSize(800, 450); });
    window->findChild<Stage::PlayerControls*>()->hide();
    const QImage shown = window->grab().toImage();
    EXPECT_EQ(shown.pixel(400, 100), qRgb(0, 0, 0));
    EXPECT_NE(shown.pixel(400, 400), qRgb(0, 0, 0));
}

TEST_F(PlayerWindowTest, TheControlsFitTheSmallestWindow) {
    startPlaying(12);
    for (const QSize size : {QSize{640, 360}, QSize{1024, 640}, QSize{1920, 1080}}) {
        window->resize(size);
        waitFor([&] { return window->size() == size; });
        auto* const controls = window->findChild<Stage::PlayerControls*>();
        controls->show();
        EXPECT_TRUE(window->rect().contains(controls->geometry()));
        EXPECT_GE(slider()->width(), 100) << size.width();
        const QString folder = qEnvironmentVariable("ROAMLY_SHOTS");
        if (!folder.isEmpty())
            window->grab().save(QStringLiteral("%1/player-%2.png").arg(folder).arg(size.width()));
    }
}

TEST(PositionText, IsMinutesAndSecondsAndHoursWhereNeeded) {
    EXPECT_EQ(Stage::timeText(0), QStringLiteral("0:00"));
    EXPECT_EQ(Stage::timeText(65.9), QStringLiteral("1:05"));
    EXPECT_EQ(Stage::timeText(3723), QStringLiteral("1:02:03"));
}
