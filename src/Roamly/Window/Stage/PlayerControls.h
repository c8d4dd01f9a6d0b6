// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Stage/PositionSlider.h>

#include <QWidget>
#include <vector>

class QLabel;
class QToolButton;

namespace Stage {

/// The bar over the picture. It lies from left to right in every language, as a film's time does.
class PlayerControls : public QWidget {
    Q_OBJECT

public:
    /// `duration` in seconds.
    PlayerControls(double duration, std::vector<ChapterMark> chapters, bool hasMusic, QWidget* parent);

    void showPosition(double time, bool isPlaying);
    /// Whether the user holds the slider or has the keyboard in here.
    [[nodiscard]] bool isInUse() const;
    [[nodiscard]] PositionSlider* slider() const { return m_slider; }
    void toggleMute();

Q_SIGNALS:
    void previousWanted();
    void playWanted();
    void nextWanted();
    void positionWanted(double time);
    void muteWanted(bool isMuted);
    void closeWanted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QToolButton* addButton(const QString& name, const QString& icon, const QString& key);

    double m_duration;
    QToolButton* m_play = nullptr;
    QToolButton* m_mute = nullptr;
    QLabel* m_time = nullptr;
    PositionSlider* m_slider = nullptr;
    bool m_isPlaying = false;
};

} // namespace Stage
