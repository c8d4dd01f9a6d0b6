// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/Icons.h>
#include <Roamly/Window/Theme/SearchField.h>

#include <QAbstractButton>
#include <QAction>
#include <QLineEdit>

namespace Theme {

void makeSearchField(QLineEdit& field) {
    const QAction* const lens = field.addAction(icon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    QObject::connect(lens, &QAction::triggered, &field, [&field] { field.setFocus(); });
    if (auto* const button = field.findChild<QAbstractButton*>())
        button->setAccessibleName(QStringLiteral("Search"));
    field.setClearButtonEnabled(true);
    for (auto* const button : field.findChildren<QAbstractButton*>()) {
        if (button->accessibleName().isEmpty())
            button->setAccessibleName(QStringLiteral("Clear"));
    }
}

} // namespace Theme
