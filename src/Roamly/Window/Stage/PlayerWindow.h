// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Player/AudioPlayerController.h>
#include <Roamly/Player/SlideshowPlayerModel.h>
#include <Roamly/Window/Stage/FrameFeed.h>

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace Stage {

class PlayerControls;

/// What is played.
struct Film {
    Timeline::SlideshowTimeline timeline;
    /// In seconds, as the settings have it.
    double crossfade = 0;
    /// Draws the film's frames; called on another thread.
    FrameFeed::MakeSource frames;
    /// The file that the timeline's music is.
    std::optional<std::filesystem::path> music;
    /// The project's name.
    QString title;
};

/// What the player needs of the machine.
struct PlayerServices {
    /// Seconds of a clock that never goes back.
    std::function<double()> now;
    /// The screen stays on as long as what is returned lives.
    std::function<std::shared_ptr<void>(const QString& reason)> keepAwake;
};

/// Plays a film on the whole screen or in a window. Once closed it is over.
class PlayerWindow : public QWidget {
    Q_OBJECT

public:
    PlayerWindow(Film film, PlayerServices services);
    ~PlayerWindow() override;

    /// Opens and plays as soon as the first picture is there. `from` in seconds.
    void start(double from, bool inWindow);

    [[nodiscard]] const Player::SlideshowPlayerModel& model() const { return m_model; }
    /// What is on screen, in the film's own pixels.
    [[nodiscard]] const QImage& picture() const { return m_picture; }

Q_SIGNALS:
    /// It is gone from the screen, and its music has faded out.
    void closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void togglePlay();
    void toggleFullScreen();
    void pass();
    void showChange();
    void showPlaying();
    void takePicture();
    void revealControls();
    void hideControls();
    /// The picture's place in the window: 16 : 9.
    [[nodiscard]] QRect stage() const;

    PlayerServices m_services;
    Player::SlideshowPlayerModel m_model;
    std::unique_ptr<Player::AudioPlayerController> m_music;
    PlayerControls* m_controls = nullptr;
    QImage m_picture;
    QTimer m_tick;
    QTimer m_hide;
    double m_lastTick = 0;
    bool m_playsWhenReady = false;
    bool m_wasPlaying = false;
    std::shared_ptr<void> m_awake;
    /// Last, so that its thread ends first.
    std::unique_ptr<FrameFeed> m_feed;
};

} // namespace Stage
