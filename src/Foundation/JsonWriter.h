// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Foundation {

/// Writes JSON text piece by piece. Members and elements come out in the order of the calls; doubles in the
/// shortest form that reads back to the same value; text as UTF-8 with only what must be escaped escaped.
/// Misuse (a value without its key, unbalanced ends) is a programming error and asserts.
class JsonWriter {
public:
    enum class Layout {
        /// One line, no spaces.
        Compact,
        /// One member or element a line, indented by two spaces; empty containers as `{}` and `[]`.
        Pretty,
    };

    explicit JsonWriter(Layout layout);

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(std::string_view name);

    /// Throws std::invalid_argument when the text is not valid UTF-8.
    JsonWriter& value(std::string_view text);
    JsonWriter& value(const char* text) { return value(std::string_view{text}); }
    JsonWriter& value(bool flag);
    JsonWriter& value(std::int64_t number);
    JsonWriter& value(int number) { return value(static_cast<std::int64_t>(number)); }
    /// Throws std::invalid_argument when the number is not finite, which JSON cannot hold.
    JsonWriter& value(double number);
    JsonWriter& null();
    /// A piece of JSON made elsewhere, taken as it is.
    JsonWriter& raw(std::string_view json);

    template <typename Value>
    JsonWriter& member(std::string_view name, const Value& content) {
        return key(name).value(content);
    }

    /// The text so far; complete once every container is closed.
    [[nodiscard]] const std::string& text() const { return m_text; }
    /// The same without a copy; the writer is done with.
    [[nodiscard]] std::string takeText() { return std::move(m_text); }

private:
    void beforeValue();
    void newLine();
    JsonWriter& end(char bracket);

    Layout m_layout;
    std::string m_text;
    /// For each open container, whether it holds something already.
    std::vector<bool> m_hasContent;
    bool m_afterKey = false;
};

} // namespace Foundation
