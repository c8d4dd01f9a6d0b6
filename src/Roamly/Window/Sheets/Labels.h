#pragma once

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
/// A sentence that wraps.
[[nodiscard]] QLabel* sentence(const QString& text = {});
/// A sentence in quiet colour.
[[nodiscard]] QLabel* note(const QString& text = {});
/// A picture of the family at 16 or 24 pixels, beside a text that says the same.
[[nodiscard]] QLabel* picture(const QString& icon, int side, const QColor& colour = {});

} // namespace Sheets
