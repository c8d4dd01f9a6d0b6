// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/SettingsGroup.h>

#include <QFormLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace Sheets {

SettingsGroup::SettingsGroup(const QString& title)
    : m_form(new QFormLayout) {
    setAccessibleName(title);
    auto* const column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(groupTitle(title));
    m_form->setSpacing(8);
    m_form->setHorizontalSpacing(16);
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setLabelAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    column->addLayout(m_form);
}

void SettingsGroup::addRow(const QString& label, QWidget* control) {
    QLabel* const text = fieldLabel(label, control);
    text->setMinimumWidth(144);
    m_form->addRow(text, control);
}

void SettingsGroup::addRow(QWidget* control) {
    m_form->addRow(control);
}

QLabel* SettingsGroup::addNote(const QString& markdown) {
    QLabel* const label = note(markdown);
    label->setTextFormat(Qt::MarkdownText);
    m_form->addRow(label);
    return label;
}

} // namespace Sheets
