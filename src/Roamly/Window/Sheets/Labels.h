// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFrame>
#include <QLabel>
#include <QString>
#include <string>
#include <string_view>

/// The texts of sheets in their few sizes.
namespace Sheets {

/// From UTF-8.
[[nodiscard]] QString toText(std::string_view utf8);
[[nodiscard]] std::string toUtf8(const QString& text);

/// What a sheet is called, at its top.
[[nodiscard]] QLabel* heading(const QString& text);
/// What a group of controls is called.
[[nodiscard]] QLabel* groupTitle(const QString& text);
/// What stands before a control, centred on its height; it is the control's accessible name where that has
/// none.
[[nodiscard]] QLabel* fieldLabel(const QString& text, QWidget* control);
/// A quiet line between two sides of a window.
[[nodiscard]] QFrame* divider();
/// A sentence that wraps.
[[nodiscard]] QLabel* sentence(const QString& text = {});
/// A sentence in quiet colour.
[[nodiscard]] QLabel* note(const QString& text = {});
/// A picture of the family at 16 or 24 pixels, beside a text that says the same.
[[nodiscard]] QLabel* picture(const QString& icon, int side, const QColor& colour = {});

} // namespace Sheets
