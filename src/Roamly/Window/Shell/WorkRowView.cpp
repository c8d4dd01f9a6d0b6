// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/TimeLeft.h>
#include <Roamly/Window/Shell/WorkRowView.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <cmath>

namespace Shell {

namespace {

constexpr int fullBar = 1000;

QString nameOf(WorkKind kind) {
    switch (kind) {
    case WorkKind::importing:
        return QStringLiteral("Import");
    case WorkKind::analysis:
        return QStringLiteral("Analysis");
    case WorkKind::captions:
        return QStringLiteral("Captions");
    case WorkKind::exportMovie:
        return QStringLiteral("Export");
    }
    return {};
}

} // namespace

WorkRowView::WorkRowView(QWidget* parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
    , m_bar(new QProgressBar(this))
    , m_left(new QLabel(this))
    , m_cancel(new QPushButton(QStringLiteral("Cancel"), this)) {
    m_text->setTextFormat(Qt::PlainText);
    m_text->setMinimumWidth(240);
    m_left->setMinimumWidth(160);
    m_left->setForegroundRole(QPalette::PlaceholderText);
    m_bar->setTextVisible(false);
    m_bar->setMaximumHeight(8);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 4, 16, 4);
    layout->setSpacing(16);
    layout->addWidget(m_text, 2);
    layout->addWidget(m_bar, 3);
    layout->addWidget(m_left, 1);
    layout->addWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, &WorkRowView::cancelled);
}

void WorkRowView::show(const WorkRow& row, const std::optional<double>& secondsLeft) {
    const QString name = nameOf(row.kind);
    m_text->setText(QString::fromStdString(row.text));
    m_text->setAccessibleName(m_text->text());
    m_bar->setAccessibleName(name);
    m_bar->setAccessibleDescription(m_text->text());
    m_bar->setRange(0, row.fraction ? fullBar : 0);
    if (row.fraction)
        m_bar->setValue(static_cast<int>(std::lround(*row.fraction * fullBar)));
    m_left->setText(secondsLeft ? QString::fromStdString(Jobs::timeLeftText(*secondsLeft)) : QString{});
    m_cancel->setEnabled(!row.isStopping);
    m_cancel->setText(row.isStopping ? QStringLiteral("Ending…") : QStringLiteral("Cancel"));
    m_cancel->setAccessibleName(QStringLiteral("Cancel %1").arg(name));
}

} // namespace Shell
