// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Shell/WorkRowView.h>
#include <Roamly/Window/Shell/WorkStrip.h>

#include <QVBoxLayout>
#include <utility>

namespace Shell {

WorkStrip::WorkStrip(std::function<double()> now, QWidget* parent)
    : QWidget(parent)
    , m_now(std::move(now))
    , m_layout(new QVBoxLayout(this)) {
    setAccessibleName(QStringLiteral("Progress"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    hide();
}

WorkStrip::~WorkStrip() = default;

void WorkStrip::show(WorkKind kind, const std::optional<WorkRow>& row) {
    if (!row) {
        const auto found = m_entries.find(kind);
        if (found != m_entries.end()) {
            found->second.view->deleteLater();
            found->second.view->hide();
            m_entries.erase(found);
        }
        setVisible(!m_entries.empty());
        return;
    }
    Entry& entry = m_entries[kind];
    if (entry.view == nullptr) {
        entry.view = new WorkRowView(this);
        connect(entry.view, &WorkRowView::cancelled, this, [this, kind] { Q_EMIT cancelled(kind); });
        m_layout->addWidget(entry.view);
    }
    const double now = m_now();
    if (row->fraction)
        entry.timeLeft.progress(now, *row->fraction);
    entry.view->show(*row, entry.timeLeft.seconds(now));
    setVisible(true);
}

} // namespace Shell
