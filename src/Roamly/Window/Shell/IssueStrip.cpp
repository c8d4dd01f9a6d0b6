// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/IssueStrip.h>
#include <Roamly/Window/Theme/Icons.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace Shell {

IssueStrip::IssueStrip(const QString& name, const QString& remedy, QWidget* parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
    , m_remedy(new QPushButton(remedy, this)) {
    setAccessibleName(name);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto* const icon = new QLabel(this);
    icon->setPixmap(Theme::icon(QStringLiteral("warning")).pixmap(16, 16));
    auto* const dismiss = new QToolButton(this);
    dismiss->setAutoRaise(true);
    dismiss->setIcon(Theme::icon(QStringLiteral("close")));
    dismiss->setAccessibleName(QStringLiteral("Dismiss %1").arg(name));
    dismiss->setToolTip(QStringLiteral("Dismiss"));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(8);
    layout->addWidget(icon);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_remedy);
    layout->addWidget(dismiss);
    connect(m_remedy, &QPushButton::clicked, this, &IssueStrip::remedyWanted);
    connect(dismiss, &QToolButton::clicked, this, &IssueStrip::dismissed);
    hide();
}

void IssueStrip::show(const QStringList& issues, bool canBeRemedied) {
    m_text->setText(issues.join(QLatin1Char('\n')));
    m_text->setAccessibleName(m_text->text());
    m_remedy->setVisible(canBeRemedied);
    setVisible(!issues.isEmpty());
}

} // namespace Shell
