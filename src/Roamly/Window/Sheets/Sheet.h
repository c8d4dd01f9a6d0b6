// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>

namespace Sheets {

/// What all sheets have in common: a heading, the content, a row of buttons; modal to the window they belong
/// to, and as high as their content. Shown with `open()`, never run in a loop of its own.
class Sheet : public QDialog {
    Q_OBJECT
public:
    /// `name` is the heading, the window's title and the accessible name.
    Sheet(const QString& name, QWidget* parent);

protected:
    /// Where the content goes.
    [[nodiscard]] QVBoxLayout* body() { return m_body; }

    /// The first button added with a role that accepts is the primary one.
    QPushButton* addButton(const QString& text, QDialogButtonBox::ButtonRole role);
    [[nodiscard]] QDialogButtonBox* buttonRow() { return m_buttons; }

    /// Takes the height that the content needs now; for when something came or went.
    void fitHeight();

private:
    QVBoxLayout* m_body;
    QDialogButtonBox* m_buttons;
};

/// The content's least width in pixels of the layout.
inline constexpr int sheetWidth = 480;

} // namespace Sheets
