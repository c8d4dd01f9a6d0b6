// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Alert.h>
#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Theme/Colours.h>
#include <Roamly/Window/Theme/Style.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace Sheets {

namespace {

constexpr int alertWidth = 440;
constexpr int iconSide = 32;

/// With places to break inside words that are too long for a line, such as paths.
QString breakable(const QString& text) {
    constexpr int longestWord = 32;
    QString result;
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        // Never inside a pair of surrogates.
        if (length > longestWord && !character.isLowSurrogate()) {
            result += QChar{0x200b};
            length = 1;
        }
        result += character;
    }
    return result;
}

} // namespace

Alert::Alert(const AlertContent& content, QWidget* parent)
    : QDialog(parent)
    , m_escape(content.escape) {
    setWindowTitle(content.title);
    setAccessibleName(content.title);
    setAccessibleDescription(content.message);
    setWindowModality(Qt::WindowModal);
    setMinimumWidth(alertWidth);

    auto* const texts = new QVBoxLayout;
    texts->setSpacing(8);
    QLabel* const title = heading(breakable(content.title));
    QFont font = title->font();
    font.setPointSizeF(this->font().pointSizeF() * 1.2);
    title->setFont(font);
    texts->addWidget(title);
    QLabel* const message = sentence(breakable(content.message));
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    texts->addWidget(message);
    texts->addStretch(1);

    auto* const top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(picture(content.icon, iconSide), 0, Qt::AlignTop);
    top->addLayout(texts, 1);

    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch(1);
    for (const AlertChoice& choice : content.choices) {
        auto* const button = new QPushButton{choice.text};
        button->setAutoDefault(false);
        button->setDefault(choice.answer == content.primary);
        button->setProperty(Theme::destructiveProperty, choice.isDestructive);
        connect(button, &QPushButton::clicked, this, [this, answer = choice.answer] { answerWith(answer); });
        row->addWidget(button);
        m_buttons.push_back({choice.answer, button});
    }

    auto* const layout = new QVBoxLayout{this};
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(24);
    layout->addLayout(top, 1);
    layout->addLayout(row);
    // A label that wraps asks for more height than it needs at this width.
    layout->activate();
    const int width = std::max(alertWidth, layout->minimumSize().width());
    resize(width, layout->totalHeightForWidth(width));
    if (QPushButton* const primary = button(content.primary))
        primary->setFocus();
}

QPushButton* Alert::button(Answer answer) const {
    for (const Button& each : m_buttons)
        if (each.answer == answer)
            return each.button;
    return nullptr;
}

void Alert::answerWith(Answer answer) {
    if (m_isAnswered)
        return;
    m_isAnswered = true;
    QDialog::done(answer == m_escape ? Rejected : Accepted);
    Q_EMIT answered(answer);
}

void Alert::done(int /*result*/) {
    answerWith(m_escape);
}

} // namespace Sheets
