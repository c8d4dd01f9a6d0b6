// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/PrivacyBanner.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QHBoxLayout>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace Sheets {

PrivacyBanner::PrivacyBanner(QWidget* parent)
    : QWidget(parent)
    , m_text(sentence()) {
    auto* const layout = new QHBoxLayout{this};
    layout->setContentsMargins(16, 8, 16, 8);
    layout->setSpacing(8);
    layout->addWidget(picture(u"shield-warning"_s, 16, Theme::colours(palette()).onDanger), 0,
                      Qt::AlignVCenter);
    layout->addWidget(m_text, 1);
    QFont font = m_text->font();
    font.setWeight(QFont::DemiBold);
    m_text->setFont(font);
    // White in both schemes: the red behind it is dark enough in each.
    QPalette colours = m_text->palette();
    colours.setColor(QPalette::WindowText, Theme::colours(palette()).onDanger);
    m_text->setPalette(colours);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setText({});
}

void PrivacyBanner::setText(const QString& text) {
    m_text->setText(text);
    m_text->setAccessibleName(text);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
}

void PrivacyBanner::paintEvent(QPaintEvent* /*event*/) {
    QPainter{this}.fillRect(rect(), Theme::colours(palette()).danger);
}

} // namespace Sheets
