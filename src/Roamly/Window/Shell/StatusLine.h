// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace Shell {

/// The line at the window's foot: the project in one sentence, and at its end a place for the photos' size.
class StatusLine : public QWidget {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent = nullptr);

    void setText(const QString& text);
    void setZoom(QWidget* zoom);

private:
    QHBoxLayout* m_layout = nullptr;
    QLabel* m_text = nullptr;
};

} // namespace Shell
