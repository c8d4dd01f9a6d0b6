// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Sheets/Sheet.h>

#include <QStringList>

class QPlainTextEdit;

namespace Sheets {

/// Edits the guidance that goes to the AI with every photo.
class CaptionPromptSheet : public Sheet {
    Q_OBJECT
public:
    /// `defaultPrompt` is what holds while the project's own is empty; shown, not edited.
    CaptionPromptSheet(const QString& prompt, const QString& defaultPrompt, QWidget* parent);

    [[nodiscard]] static QStringList examples();

Q_SIGNALS:
    /// After each change, with the whole text.
    void promptEdited(const QString& prompt);

private:
    QPlainTextEdit* m_prompt;
};

} // namespace Sheets
