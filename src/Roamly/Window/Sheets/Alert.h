// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QString>
#include <vector>

class QPushButton;

namespace Sheets {

/// What the user may answer to an alert.
enum class Answer {
    Cancel,
    Ok,
    Agree,
    Save,
    Discard,
    KeepMine,
    LoadFile,
    Recover,
    ShowInFiles,
    Locate,
};

struct AlertChoice {
    Answer answer;
    QString text;
    bool isDestructive = false;
};

/// One question or one message.
struct AlertContent {
    /// Of Theme's family.
    QString icon;
    QString title;
    QString message;
    /// In the order of the Tab key; at least one.
    std::vector<AlertChoice> choices;
    /// What Return answers; absent in `choices` when Return shall do nothing by itself.
    Answer primary;
    /// What Esc and the window's close button answer.
    Answer escape;
};

/// An alert as a window-modal dialog, shown with `open()`. Answers once and closes; whoever wants it gone
/// sets Qt::WA_DeleteOnClose.
class Alert : public QDialog {
    Q_OBJECT
public:
    Alert(const AlertContent& content, QWidget* parent);

    /// The button of an answer; null when there is none.
    [[nodiscard]] QPushButton* button(Answer answer) const;

    void done(int result) override;

Q_SIGNALS:
    void answered(Sheets::Answer answer);

private:
    struct Button {
        Answer answer;
        QPushButton* button;
    };

    void answerWith(Answer answer);

    Answer m_escape;
    std::vector<Button> m_buttons;
    bool m_isAnswered = false;
};

} // namespace Sheets
