// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/ConnectionTestRow.h>
#include <Roamly/Window/Sheets/Labels.h>

#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <utility>

using namespace Qt::StringLiterals;

namespace Sheets {

ConnectionTestRow::ConnectionTestRow(const QString& backend, ConnectionTest test)
    : m_test(std::move(test))
    , m_button(new QPushButton{u"Test Connection"_s})
    , m_status(note()) {
    m_button->setAutoDefault(false);
    m_button->setAccessibleName(u"Test Connection"_s);
    m_button->setAccessibleDescription(backend);
    m_status->setObjectName(u"connectionStatus"_s);
    auto* const row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    row->addWidget(m_button);
    row->addWidget(m_status, 1);
    connect(m_button, &QPushButton::clicked, this, &ConnectionTestRow::run);
}

void ConnectionTestRow::run() {
    const int run = ++m_run;
    m_button->setEnabled(false);
    m_status->setForegroundRole(QPalette::PlaceholderText);
    m_status->setText(u"Testing…"_s);
    m_test([self = QPointer{this}, run](const ConnectionStatus& status) {
        if (self && self->m_run == run)
            self->show(status);
    });
}

void ConnectionTestRow::show(const ConnectionStatus& status) {
    m_button->setEnabled(true);
    m_status->setForegroundRole(QPalette::WindowText);
    m_status->setText(status.text);
    m_status->setAccessibleName(status.text);
}

void ConnectionTestRow::forget() {
    ++m_run;
    m_button->setEnabled(true);
    m_status->clear();
}

} // namespace Sheets
