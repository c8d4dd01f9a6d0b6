// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>
#include <Foundation/JsonWriter.h>

#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace Foundation {

JsonWriter::JsonWriter(Layout layout)
    : m_layout(layout) {}

void JsonWriter::newLine() {
    if (m_layout == Layout::Pretty) {
        m_text += '\n';
        m_text.append(m_hasContent.size() * 2, ' ');
    }
}

void JsonWriter::beforeValue() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_hasContent.empty())
        return;
    if (m_hasContent.back())
        m_text += ',';
    m_hasContent.back() = true;
    newLine();
}

JsonWriter& JsonWriter::beginObject() {
    beforeValue();
    m_text += '{';
    m_hasContent.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    beforeValue();
    m_text += '[';
    m_hasContent.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
    assert(!m_hasContent.empty() && !m_afterKey);
    const bool hadContent = m_hasContent.back();
    m_hasContent.pop_back();
    if (hadContent)
        newLine();
    m_text += bracket;
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    return end('}');
}

JsonWriter& JsonWriter::endArray() {
    return end(']');
}

JsonWriter& JsonWriter::key(std::string_view name) {
    assert(!m_hasContent.empty() && !m_afterKey);
    value(name);
    m_text += m_layout == Layout::Pretty ? ": " : ":";
    m_afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view text) {
    if (!isValidUtf8(text))
        throw std::invalid_argument("A text is not valid UTF-8.");
    beforeValue();
    m_text += '"';
    constexpr std::string_view digits = "0123456789abcdef";
    for (const char c : text) {
        switch (c) {
        case '"':
            m_text += "\\\"";
            break;
        case '\\':
            m_text += "\\\\";
            break;
        case '\b':
            m_text += "\\b";
            break;
        case '\f':
            m_text += "\\f";
            break;
        case '\n':
            m_text += "\\n";
            break;
        case '\r':
            m_text += "\\r";
            break;
        case '\t':
            m_text += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                m_text += "\\u00";
                m_text += digits[static_cast<unsigned char>(c) >> 4];
                m_text += digits[static_cast<unsigned char>(c) & 15];
            } else {
                m_text += c;
            }
        }
    }
    m_text += '"';
    return *this;
}

JsonWriter& JsonWriter::value(bool flag) {
    return raw(flag ? "true" : "false");
}

JsonWriter& JsonWriter::value(std::int64_t number) {
    std::array<char, 24> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return raw({buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())});
}

JsonWriter& JsonWriter::value(double number) {
    if (!std::isfinite(number))
        throw std::invalid_argument("A number is not finite.");
    // "-0" would be read back as an integer, which has no sign of zero.
    if (number == 0 && std::signbit(number))
        return raw("-0.0");
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return raw({buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())});
}

JsonWriter& JsonWriter::null() {
    return raw("null");
}

JsonWriter& JsonWriter::raw(std::string_view json) {
    beforeValue();
    m_text += json;
    return *this;
}

} // namespace Foundation
