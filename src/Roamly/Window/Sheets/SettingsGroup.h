// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>

class QFormLayout;
class QLabel;
class QVBoxLayout;

namespace Sheets {

/// A titled group of settings on a page: rows of a name and its control, and notes under them.
class SettingsGroup : public QWidget {
    Q_OBJECT
public:
    explicit SettingsGroup(const QString& title);

    /// The control gets the label as its accessible name, unless it has one.
    void addRow(const QString& label, QWidget* control);
    /// A control that carries its own text.
    void addRow(QWidget* control);
    /// A quiet sentence; Markdown's `code` and **bold** are shown as such.
    QLabel* addNote(const QString& markdown);

private:
    QFormLayout* m_form;
};

} // namespace Sheets
