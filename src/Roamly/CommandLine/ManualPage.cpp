// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Help.h>
#include <Roamly/CommandLine/ManualPage.h>

#include <string_view>

namespace CommandLine {

namespace {

constexpr std::string_view head = R"(.TH ROAMLY 1 "" "Roamly" "User commands"
.SH NAME
roamly \- turn a pile of holiday photos into a slideshow film
.SH SYNOPSIS
.B roamly
.I COMMAND
.RI [ ARGUMENT ...]
.br
.B roamly
.RI [ COMMAND ]
.B \-\-help
|
.B \-\-version
|
.B \-\-licences
.SH DESCRIPTION
Roamly makes a film of photos: slow motion over each photo, dissolves, a card for each new place, captions, and
music that fades with the last photo.
.PP
.B roamly make
does it in one go. Between import and export a project file keeps what the user decides about the photos: which
are shown, in what order, with which captions and places. A project is saved as a whole: after a crash the file
holds the old project or the new one. Commands that change one project at the same time wait for each other.
.PP
Options and arguments may come in any order;
.B \-\-
ends the options. Every command has
.BR \-\-help ,
and
.BR \-\-json ,
which reports progress and the result as JSON lines on standard output: {"progress":...} and, last,
{"result":...}.
.SH COMMANDS
)";

constexpr std::string_view foot = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Failed; one sentence on standard error says why.
.TP
.B 2
The call was not understood.
.TP
.B 130
Interrupted. Ctrl-C ends the work in good order, a second one at once; no unfinished movie is left.
.SH FILES
.TP
.I $XDG_CONFIG_HOME/app.roamly.Roamly/settings.ini
The settings for all projects. Where the variable is not set,
.I ~/.config
stands for it.
)";

/// The text as roff shows it: nothing in it is taken for a request or a special character.
std::string escaped(std::string_view text) {
    std::string result;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\''))
            result += "\\&";
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
        isLineStart = c == '\n';
    }
    return result;
}

std::string commandSection(const Command& command) {
    std::string text;
    for (std::size_t index = 0; index < command.usages.size(); ++index) {
        text += index == 0 ? ".TP\n" : ".TQ\n";
        text += "\\fB" + escaped(command.name) + "\\fR " + escaped(command.usages[index]) + "\n";
    }
    text += escaped(sentence(command.summary)) + "\n";
    if (!command.details.empty())
        text += ".nf\n" + escaped(command.details) + "\n.fi\n";
    if (!command.options.empty()) {
        text += ".RS\n";
        for (const Option& option : command.options)
            text += ".TP\n.B " + escaped(optionText(option)) + "\n" + escaped(option.help) + "\n";
        text += ".RE\n";
    }
    return text;
}

} // namespace

std::string manualPage() {
    std::string text{head};
    for (const Command& command : commands())
        text += commandSection(command);
    text += foot;
    text += ".SH EXAMPLES\n.nf\n";
    for (const Command& command : commands()) {
        for (const std::string_view example : command.examples)
            text += escaped(example) + "\n";
    }
    return text + ".fi\n";
}

} // namespace CommandLine
