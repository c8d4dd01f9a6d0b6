// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JsonValue.h"

#include <ProjectModel/ProjectFile.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <utility>

namespace ProjectModel {

namespace {

/// Far more than any project needs, and little enough for code that recurses over the value.
constexpr std::size_t deepestNesting = 512;

ProjectFileError notJson(std::string_view text, std::size_t offset, const std::string& reason) {
    const std::string_view before = text.substr(0, offset);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1;
    return {ProjectFileError::Kind::dataCorrupted, "The file is not a valid project: " + reason + " (line " +
                                                       std::to_string(line) + ", column " +
                                                       std::to_string(before.size() - lineStart + 1) + ")."};
}

/// Receives what the parser meets and builds the value.
class Builder {
public:
    explicit Builder(std::string_view text)
        : m_text(text) {}

    JsonValue take() { return std::move(m_root); }

    bool null() { return add(nullptr); }
    bool boolean(bool flag) { return add(flag); }
    bool number_integer(std::int64_t number) { return add(number); }
    bool number_unsigned(std::uint64_t number) { return add(number); }
    bool number_float(double number, const std::string&) { return add(number); }
    bool string(std::string& text) { return add(std::move(text)); }
    bool binary(nlohmann::json::binary_t&) { return false; }

    bool start_object(std::size_t) { return open(JsonValue::Object{}); }
    bool key(std::string& name) {
        std::get<JsonValue::Object>(m_open.back()->content).push_back({std::move(name), {}});
        return true;
    }
    bool end_object() {
        auto& members = std::get<JsonValue::Object>(m_open.back()->content);
        const auto byKey = [](const auto& a, const auto& b) { return a.key < b.key; };
        if (!std::is_sorted(members.begin(), members.end(), byKey))
            std::stable_sort(members.begin(), members.end(), byKey);
        m_open.pop_back();
        return true;
    }

    bool start_array(std::size_t) { return open(JsonValue::Array{}); }
    bool end_array() {
        m_open.pop_back();
        return true;
    }

    /// `position` counts the bytes read, the offending one included.
    bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) {
        constexpr int numberOverflow = 406;
        throw notJson(m_text, position == 0 ? 0 : position - 1,
                      error.id == numberOverflow ? "it holds a number that is too large"
                                                 : "it is not valid JSON");
    }

private:
    template <typename Content>
    JsonValue& place(Content&& content) {
        JsonValue* slot = &m_root;
        if (!m_open.empty()) {
            if (auto* list = std::get_if<JsonValue::Array>(&m_open.back()->content))
                slot = &list->emplace_back();
            else
                slot = &std::get<JsonValue::Object>(m_open.back()->content).back().value;
        }
        slot->content = std::forward<Content>(content);
        return *slot;
    }

    template <typename Content>
    bool add(Content&& content) {
        place(std::forward<Content>(content));
        return true;
    }

    template <typename Container>
    bool open(Container&& container) {
        if (m_open.size() == deepestNesting)
            throw ProjectFileError(ProjectFileError::Kind::dataCorrupted,
                                   "The file is not a valid project: its JSON is nested too deeply.");
        m_open.push_back(&place(std::forward<Container>(container)));
        return true;
    }

    std::string_view m_text;
    JsonValue m_root;
    /// The containers that are not closed yet, outermost first. None of them moves while it is open, since
    /// its parent takes no further value before it is closed.
    std::vector<JsonValue*> m_open;
};

} // namespace

JsonValue parseJson(std::string_view text) {
    if (text.empty())
        throw ProjectFileError(ProjectFileError::Kind::dataCorrupted,
                               "The file is empty and holds no project.");
    // The parser takes a NUL byte for the end of its input and would ignore what follows.
    if (const std::size_t offset = text.find('\0'); offset != std::string_view::npos)
        throw notJson(text, offset, "it is not valid JSON");
    Builder builder{text};
    nlohmann::json::sax_parse(text.data(), text.data() + text.size(), &builder);
    return builder.take();
}

std::string_view typeName(const JsonValue& value) {
    struct Name {
        std::string_view operator()(std::nullptr_t) const { return "null"; }
        std::string_view operator()(bool) const { return "a boolean"; }
        std::string_view operator()(std::int64_t) const { return "a number"; }
        std::string_view operator()(std::uint64_t) const { return "a number"; }
        std::string_view operator()(double) const { return "a number"; }
        std::string_view operator()(const std::string&) const { return "a text"; }
        std::string_view operator()(const JsonValue::Array&) const { return "a list"; }
        std::string_view operator()(const JsonValue::Object&) const { return "an object"; }
    };
    return std::visit(Name{}, value.content);
}

} // namespace ProjectModel
