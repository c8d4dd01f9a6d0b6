// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class QPushButton;

namespace Shell {

/// What could not be done, in the user's words, with what can be done about it. Takes no room without issues.
class IssueStrip : public QWidget {
    Q_OBJECT

public:
    /// `remedy` is the button's text: "Try Again". `name` is what a screen reader calls the strip.
    IssueStrip(const QString& name, const QString& remedy, QWidget* parent = nullptr);

    /// Without issues nothing is shown.
    void show(const QStringList& issues, bool canBeRemedied);

Q_SIGNALS:
    void remedyWanted();
    /// The user has read them.
    void dismissed();

private:
    QLabel* m_text = nullptr;
    QPushButton* m_remedy = nullptr;
};

} // namespace Shell
