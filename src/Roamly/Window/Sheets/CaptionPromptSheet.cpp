// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/CaptionPromptSheet.h>
#include <Roamly/Window/Sheets/Labels.h>

#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace Sheets {

QStringList CaptionPromptSheet::examples() {
    return {u"Witty and playful, like postcard captions."_s, u"Formal travel-guide voice."_s,
            u"Focus on the food and drinks."_s, u"Short and poetic, one vivid image each."_s};
}

CaptionPromptSheet::CaptionPromptSheet(const QString& prompt, const QString& defaultPrompt, QWidget* parent)
    : Sheet(u"AI Caption Prompt"_s, parent)
    , m_prompt(new QPlainTextEdit{prompt}) {
    body()->addWidget(note(
        u"Guidance sent to the AI with every photo, steering the tone and how the scene is described. Leave empty for a neutral, natural caption."_s));
    m_prompt->setAccessibleName(u"Caption prompt"_s);
    m_prompt->setPlaceholderText(defaultPrompt);
    m_prompt->setTabChangesFocus(true);
    m_prompt->document()->setDocumentMargin(8);
    m_prompt->setMinimumHeight(112);
    body()->addWidget(m_prompt, 1);
    connect(m_prompt, &QPlainTextEdit::textChanged, this,
            [this] { Q_EMIT promptEdited(m_prompt->toPlainText()); });

    QPushButton* const examplesButton = addButton(u"Examples"_s, QDialogButtonBox::ResetRole);
    examplesButton->setToolTip(u"Fill the field with an example"_s);
    auto* const menu = new QMenu{examplesButton};
    menu->setAccessibleName(u"Examples"_s);
    for (const QString& example : CaptionPromptSheet::examples())
        menu->addAction(example, this, [this, example] {
            // As typing would, so that the field's own undo takes it back.
            QTextCursor cursor{m_prompt->document()};
            cursor.select(QTextCursor::Document);
            cursor.insertText(example);
            m_prompt->setFocus();
        });
    examplesButton->setMenu(menu);
    QPushButton* const done = addButton(u"Done"_s, QDialogButtonBox::AcceptRole);
    connect(done, &QPushButton::clicked, this, &QDialog::accept);
    m_prompt->setFocus();
}

} // namespace Sheets
