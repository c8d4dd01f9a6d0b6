// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSlider>
#include <QString>
#include <vector>

namespace Stage {

/// Where a chapter of the film begins, in seconds.
struct ChapterMark {
    double start = 0;
    QString title;
};

/// "1:05", "1:02:03".
[[nodiscard]] QString timeText(double seconds);

/// A film's position, with its chapters marked. Its values are milliseconds.
class PositionSlider : public QSlider {
    Q_OBJECT

public:
    /// `duration` in seconds.
    PositionSlider(double duration, std::vector<ChapterMark> chapters, QWidget* parent = nullptr);

    [[nodiscard]] const std::vector<ChapterMark>& chapters() const { return m_chapters; }
    /// Shows the film's position; tells nobody, and leaves the user's hand alone.
    void show(double time);

Q_SIGNALS:
    /// The user wants to be there, in seconds.
    void wanted(double time);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    [[nodiscard]] QSize sizeHint() const override;

private:
    [[nodiscard]] double xOf(double value) const;
    [[nodiscard]] int valueAt(double x) const;
    /// "Lisbon, Portugal, 1:05".
    [[nodiscard]] QString placeText(double time) const;
    void follow(const QMouseEvent& event);

    std::vector<ChapterMark> m_chapters;
};

} // namespace Stage
