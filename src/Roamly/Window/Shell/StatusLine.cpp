// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/StatusLine.h>

#include <QHBoxLayout>
#include <QLabel>

namespace Shell {

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QHBoxLayout(this))
    , m_text(new QLabel(this)) {
    setAccessibleName(QStringLiteral("Status"));
    m_text->setTextFormat(Qt::PlainText);
    m_layout->setContentsMargins(16, 4, 16, 4);
    m_layout->setSpacing(16);
    m_layout->addWidget(m_text, 1);
    setMinimumHeight(32);
}

void StatusLine::setText(const QString& text) {
    m_text->setText(text);
    m_text->setAccessibleName(text);
}

void StatusLine::setZoom(QWidget* zoom) {
    m_layout->addWidget(zoom);
}

} // namespace Shell
