// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Sheets/Labels.h>
#include <Roamly/Window/Sheets/Sheet.h>

#include <algorithm>

namespace Sheets {

namespace {

constexpr int margin = 24;
constexpr int spacing = 16;

} // namespace

Sheet::Sheet(const QString& name, QWidget* parent)
    : QDialog(parent)
    , m_body(new QVBoxLayout)
    , m_buttons(new QDialogButtonBox) {
    setWindowTitle(name);
    setAccessibleName(name);
    setWindowModality(Qt::WindowModal);
    setMinimumWidth(sheetWidth);
    auto* const layout = new QVBoxLayout{this};
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
    layout->addWidget(heading(name));
    m_body->setSpacing(spacing);
    layout->addLayout(m_body, 1);
    layout->addSpacing(8);
    layout->addWidget(m_buttons);
}

QPushButton* Sheet::addButton(const QString& text, QDialogButtonBox::ButtonRole role) {
    QPushButton* const button = m_buttons->addButton(text, role);
    const bool isPrimary = role == QDialogButtonBox::AcceptRole || role == QDialogButtonBox::YesRole;
    button->setAutoDefault(false);
    if (isPrimary)
        button->setDefault(true);
    return button;
}

void Sheet::fitHeight() {
    layout()->activate();
    const int width = std::max(this->width(), minimumWidth());
    resize(width, layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : sizeHint().height());
}

} // namespace Sheets
