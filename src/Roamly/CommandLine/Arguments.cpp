// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Arguments.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Suggestion.h>

#include <algorithm>

namespace CommandLine {

namespace {

bool looksLikeNumber(std::string_view word) {
    if (word.size() < 2 || word[0] != '-')
        return false;
    const bool pointFirst = word[1] == '.' && word.size() > 2;
    const char digit = pointFirst ? word[2] : word[1];
    return digit >= '0' && digit <= '9';
}

const Option* findLong(std::span<const Option> options, std::string_view name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option& option) { return option.name == name; });
    return found == options.end() ? nullptr : &*found;
}

const Option* findShort(std::span<const Option> options, char name) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option& option) { return option.shortName == name; });
    return found == options.end() ? nullptr : &*found;
}

/// A word that stands for an option of this command, so that it was hardly meant as another option's value.
bool isKnownOption(std::string_view word, std::span<const Option> options) {
    if (word == "--")
        return true;
    if (word.starts_with("--"))
        return findLong(options, word.substr(0, word.find('='))) != nullptr;
    return word.size() == 2 && word[0] == '-' && findShort(options, word[1]) != nullptr;
}

[[noreturn]] void failUnknown(std::string_view word, std::span<const Option> options) {
    std::vector<std::string_view> names;
    for (const Option& option : options)
        names.push_back(option.name);
    throw UsageError("There is no option " + std::string{word} + "." + suggestion(word, names));
}

[[noreturn]] void failWithoutValue(const std::string& name, const Option& option) {
    throw UsageError(name + " needs a value: " + name + " " + std::string{option.value} + ".");
}

void checkCount(const std::vector<std::string>& given, std::span<const Positional> wanted) {
    for (std::size_t position = 0; position < wanted.size(); ++position) {
        if (position >= given.size() && !wanted[position].isOptional)
            throw UsageError(std::string{wanted[position].name} + " is missing.");
    }
    const bool takesAll = !wanted.empty() && wanted.back().isRepeated;
    if (given.size() > wanted.size() && !takesAll)
        throw UsageError("There is one argument too many: “" + given[wanted.size()] + "”.");
}

} // namespace

Arguments Arguments::parse(std::span<const std::string> words, std::span<const Option> options,
                           std::span<const Positional> positionals) {
    Arguments arguments;
    const auto store = [&](const Option& option, std::string value) {
        std::vector<std::string>& values = arguments.m_options[std::string{option.name}];
        if (!values.empty() && !option.repeatable && !option.value.empty())
            throw UsageError(std::string{option.name} + " was given more than once.");
        values.push_back(std::move(value));
    };

    bool optionsEnded = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string& word = words[index];
        if (optionsEnded || word.size() < 2 || word[0] != '-' || looksLikeNumber(word)) {
            arguments.m_positionals.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }

        const bool isLong = word.starts_with("--");
        const std::size_t equals = isLong ? word.find('=') : std::string::npos;
        const std::string name = isLong ? word.substr(0, equals) : word.substr(0, 2);
        const Option* const option = isLong ? findLong(options, name) : findShort(options, word[1]);
        if (!option)
            failUnknown(isLong ? name : word, options);

        const bool isAttached = isLong ? equals != std::string::npos : word.size() > 2;
        if (option->value.empty()) {
            if (isAttached)
                throw UsageError(name + " takes no value.");
            store(*option, {});
        } else if (isAttached) {
            store(*option, word.substr(isLong ? equals + 1 : 2));
        } else {
            if (index + 1 == words.size() || isKnownOption(words[index + 1], options))
                failWithoutValue(name, *option);
            store(*option, words[++index]);
        }
    }
    checkCount(arguments.m_positionals, positionals);
    return arguments;
}

std::span<const std::string> Arguments::positionalsFrom(std::size_t first) const {
    return std::span{m_positionals}.subspan(std::min(first, m_positionals.size()));
}

std::optional<std::string> Arguments::value(std::string_view option) const {
    const auto found = m_options.find(option);
    return found == m_options.end() ? std::nullopt : std::optional{found->second.front()};
}

std::string Arguments::requiredValue(std::string_view option) const {
    std::optional<std::string> given = value(option);
    if (!given)
        throw UsageError(std::string{option} + " is missing.");
    return *std::move(given);
}

std::vector<std::string> Arguments::values(std::string_view option) const {
    const auto found = m_options.find(option);
    return found == m_options.end() ? std::vector<std::string>{} : found->second;
}

bool asksForHelp(std::span<const std::string> words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    return std::find_if(words.begin(), end,
                        [](const std::string& word) { return word == "--help" || word == "-h"; }) != end;
}

} // namespace CommandLine
