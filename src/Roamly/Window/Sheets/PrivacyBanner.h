// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QLabel;

namespace Sheets {

/// The red strip that is shown for as long as photos leave the computer.
class PrivacyBanner : public QWidget {
    Q_OBJECT
public:
    explicit PrivacyBanner(QWidget* parent = nullptr);

    /// Shows the text; an empty one hides the banner.
    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_text;
};

} // namespace Sheets
