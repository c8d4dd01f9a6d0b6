// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

class QSlider;

namespace Grid {

/// How large the tiles are: a slider between a smaller and a larger step.
class ZoomControl : public QWidget {
    Q_OBJECT

public:
    ZoomControl(int smallest, int largest, QWidget* parent = nullptr);

    /// In pixels.
    [[nodiscard]] int value() const;
    void setValue(int value);
    void zoomIn();
    void zoomOut();

Q_SIGNALS:
    void valueChanged(int value);

private:
    QSlider* m_slider;
};

} // namespace Grid
