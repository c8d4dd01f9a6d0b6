// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Help.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

namespace CommandLine {

namespace {

const std::array common{
    Option{.name = "--json", .help = "progress and the result as JSON lines, for programs"},
    Option{.name = "--help", .help = "show this help", .shortName = 'h'},
};

using Rows = std::vector<std::pair<std::string, std::string_view>>;

std::size_t columns(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

void writeRows(std::ostream& out, const Rows& rows) {
    std::size_t widest = 0;
    for (const auto& [name, help] : rows)
        widest = std::max(widest, columns(name));
    for (const auto& [name, help] : rows)
        out << "  " << name << std::string(widest - columns(name) + 2, ' ') << help << '\n';
}

/// Where columns begin: each is as wide as its widest text, but those between the first and the last stay
/// narrow for the sake of a text or two.
std::vector<std::size_t> columnStarts(const std::vector<std::vector<std::string>>& rows) {
    constexpr std::size_t indent = 2;
    constexpr std::size_t gap = 2;
    constexpr std::size_t narrow = 12;
    std::vector<std::size_t> widths;
    for (const std::vector<std::string>& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = columns(row[column]);
            if (column == 0 || width <= narrow)
                widths[column] = std::max(widths[column], width);
        }
    }
    std::vector<std::size_t> starts{indent};
    for (const std::size_t width : widths)
        starts.push_back(starts.back() + width + gap);
    return starts;
}

/// The end of a text, where a row of columns is written.
class Line {
public:
    explicit Line(std::string& text)
        : m_text(text) {}

    /// Leaves at least two blanks before the column, on the next line if need be.
    void goTo(std::size_t column) {
        if (m_at > 0 && m_at + 2 > column)
            breakLine();
        m_text += std::string(column - m_at, ' ');
        m_at = column;
    }
    void write(std::string_view text) {
        m_text += text;
        m_at += columns(text);
    }
    /// Goes on at `start` of the next line when the word does not fit any more.
    void writeWord(std::string_view word, std::size_t start) {
        constexpr std::size_t widest = 99;
        if (m_at > start && m_at + 1 + columns(word) > widest) {
            breakLine();
            goTo(start);
        } else if (m_at > start) {
            write(" ");
        }
        write(word);
    }

private:
    void breakLine() {
        m_text += '\n';
        m_at = 0;
    }

    std::string& m_text;
    std::size_t m_at = 0;
};

Rows commandRows(std::string_view group) {
    const std::string prefix = std::string{group} + " ";
    Rows rows;
    for (const Command& command : commands()) {
        const bool isMember = command.name.find(' ') != std::string_view::npos;
        if (group.empty() ? !isMember : command.name.starts_with(prefix))
            rows.emplace_back(command.name, command.summary);
    }
    return rows;
}

} // namespace

std::span<const Option> commonOptions() {
    return common;
}

std::string optionText(const Option& option) {
    std::string text = option.shortName ? std::string{"-"} + option.shortName + ", " : std::string{};
    text += option.name;
    if (!option.value.empty())
        text += " " + std::string{option.value};
    return text;
}

std::string sentence(std::string_view summary) {
    std::string text{summary};
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text + ".";
}

std::string columnText(const std::vector<std::vector<std::string>>& rows) {
    const std::vector<std::size_t> starts = columnStarts(rows);
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        text += text.empty() ? "" : "\n";
        Line line{text};
        const std::size_t last = starts[row.size() - 1];
        for (std::size_t column = 0; column + 1 < row.size(); ++column) {
            line.goTo(starts[column]);
            line.write(row[column]);
        }
        line.goTo(last);
        std::istringstream words{row.back()};
        for (std::string word; words >> word;)
            line.writeWord(word, last);
    }
    return text;
}

std::string overview() {
    std::ostringstream out;
    out << "Roamly turns a pile of holiday photos into a slideshow film.\n"
           "\n"
           "In a window, where you import, review, caption, play and export:\n"
           "  roamly\n"
           "  roamly Lisbon.roamly\n"
           "\n"
           "In one go, without a window:\n"
           "  roamly make ~/Pictures/Lisbon -o Lisbon.mov --music song.mp3\n"
           "\n"
           "Step by step, with a project in which you review the photos before the film is made:\n"
           "  roamly new Lisbon.roamly\n"
           "  roamly import Lisbon.roamly ~/Pictures/Lisbon\n"
           "  roamly export Lisbon.roamly -o Lisbon.mov\n"
           "\n"
           "Commands:\n";
    Rows rows = commandRows({});
    rows.emplace_back("inspect …", "show what the program sees, as JSON (roamly inspect --help)");
    writeRows(out, rows);
    out << "\n"
           "roamly COMMAND --help explains a command; roamly --version names the version, and\n"
           "roamly --licences also whose work comes along and under which licences.\n"
           "\n"
           "Results are JSON on standard output where a program reads it, and with --json always;\n"
           "sentences for people go to standard error. The exit\n"
           "status is 0 when it is done, 1 when it failed, 2 when the call was not understood and 130\n"
           "when it was interrupted.\n";
    return out.str();
}

std::string groupHelp(std::string_view group) {
    std::ostringstream out;
    out << "Usage: roamly " << group << " …\n\n";
    writeRows(out, commandRows(group));
    out << "\nroamly " << group << " COMMAND --help explains one of them.\n";
    return out.str();
}

std::string commandHelp(const Command& command) {
    std::ostringstream out;
    std::string_view lead = "Usage: ";
    for (const std::string_view usage : command.usages) {
        out << lead << "roamly " << command.name << (usage.empty() ? "" : " ") << usage << '\n';
        lead = "       ";
    }
    out << '\n' << sentence(command.summary) << '\n';
    if (!command.details.empty())
        out << '\n' << command.details << '\n';

    Rows rows;
    for (const Positional& positional : command.positionals)
        rows.emplace_back(std::string{positional.name} + (positional.isRepeated ? "…" : ""), positional.help);
    if (!rows.empty()) {
        out << '\n';
        writeRows(out, rows);
    }

    if (const Rows members = commandRows(command.name); !members.empty()) {
        out << "\nMore commands:\n";
        writeRows(out, members);
    }

    rows.clear();
    for (const Option& option : command.options)
        rows.emplace_back(optionText(option), option.help);
    for (const Option& option : common)
        rows.emplace_back(optionText(option), option.help);
    out << "\nOptions:\n";
    writeRows(out, rows);

    if (!command.examples.empty()) {
        out << "\nExamples:\n";
        for (const std::string_view example : command.examples)
            out << "  " << example << '\n';
    }
    return out.str();
}

} // namespace CommandLine
