// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/WorkRows.h>

#include <QWidget>
#include <optional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace Shell {

/// One row of the strip.
class WorkRowView : public QWidget {
    Q_OBJECT

public:
    explicit WorkRowView(QWidget* parent = nullptr);

    void show(const WorkRow& row, const std::optional<double>& secondsLeft);

Q_SIGNALS:
    void cancelled();

private:
    QLabel* m_text = nullptr;
    QProgressBar* m_bar = nullptr;
    QLabel* m_left = nullptr;
    QPushButton* m_cancel = nullptr;
};

} // namespace Shell
