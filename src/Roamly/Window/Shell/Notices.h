// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFrame>
#include <QString>
#include <QTimer>
#include <chrono>

class QLabel;

namespace Shell {

/// Long enough to read the text: 6 s, and more for more than a short sentence.
[[nodiscard]] std::chrono::milliseconds noticeDuration(const QString& text);

/// A text over the bottom of its parent that goes by itself and is read out. A newer one takes its place.
class Notices : public QFrame {
    Q_OBJECT

public:
    explicit Notices(QWidget* parent);

    void show(const QString& text);

    [[nodiscard]] QString text() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();
    void announce();

    QLabel* m_text = nullptr;
    QTimer m_end;
};

} // namespace Shell
