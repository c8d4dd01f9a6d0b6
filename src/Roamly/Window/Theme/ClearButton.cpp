// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/ClearButton.h>

#include <QAbstractButton>
#include <QLineEdit>

namespace Theme {

void addClearButton(QLineEdit& field) {
    field.setClearButtonEnabled(true);
    if (auto* const button = field.findChild<QAbstractButton*>())
        button->setAccessibleName(QStringLiteral("Clear"));
}

} // namespace Theme
