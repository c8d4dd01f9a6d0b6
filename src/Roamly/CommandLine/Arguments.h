// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace CommandLine {

struct Option {
    /// "--at".
    std::string_view name;
    /// "T"; empty for an option without a value.
    std::string_view value = {};
    std::string_view help;
    /// 'o' for "-o"; 0 for none.
    char shortName = 0;
    bool repeatable = false;
    /// The values there are, where they are few, for completion.
    std::vector<std::string_view> choices = {};
};

struct Positional {
    /// "PROJECT".
    std::string_view name;
    std::string_view help;
    bool isOptional = false;
    /// Takes all that remain; only the last one may.
    bool isRepeated = false;
    /// The words there are, where they are few, for completion. Without them PROJECT, FOLDER and names that
    /// begin with FILE are completed from the disk.
    std::vector<std::string_view> choices = {};
};

/// What was typed after a command's name, sorted into options and the rest.
class Arguments {
public:
    /// Options and the rest may come in any order; "--" ends the options. Values follow after a space or "=".
    /// A number is never an option, however it begins. Throws UsageError.
    [[nodiscard]] static Arguments parse(std::span<const std::string> words, std::span<const Option> options,
                                         std::span<const Positional> positionals);

    [[nodiscard]] const std::vector<std::string>& positionals() const { return m_positionals; }
    /// The positionals from one position on.
    [[nodiscard]] std::span<const std::string> positionalsFrom(std::size_t first) const;
    [[nodiscard]] bool has(std::string_view option) const { return m_options.contains(option); }
    [[nodiscard]] std::optional<std::string> value(std::string_view option) const;
    /// The value of an option that cannot be left out. Throws UsageError.
    [[nodiscard]] std::string requiredValue(std::string_view option) const;
    /// All values of a repeatable option, in the order they were typed.
    [[nodiscard]] std::vector<std::string> values(std::string_view option) const;

private:
    std::vector<std::string> m_positionals;
    std::map<std::string, std::vector<std::string>, std::less<>> m_options;
};

/// Whether any of the words up to "--" is the option, without checking the others.
[[nodiscard]] bool asksForHelp(std::span<const std::string> words);

} // namespace CommandLine
