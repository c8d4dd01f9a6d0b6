// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/Document/ProjectStore.h>

#include <string>
#include <string_view>

namespace CommandLine {

namespace {

/// The document on one line: without the white space between its pieces.
std::string onOneLine(std::string_view document) {
    std::string line;
    bool isInText = false;
    bool isEscaped = false;
    for (const char c : document) {
        if (!isInText && (c == ' ' || c == '\n'))
            continue;
        if (c == '"' && !isEscaped)
            isInText = !isInText;
        isEscaped = c == '\\' && !isEscaped;
        line += c;
    }
    return line;
}

int run(const Invocation& invocation) {
    const ProjectModel::Project project =
        Document::ProjectStore::load(invocation.arguments.positionals()[0]).project;
    const std::string document = ProjectModel::encoded(project);
    if (invocation.console.isJson())
        invocation.console.result([&](Foundation::JsonWriter& json) { json.raw(onOneLine(document)); });
    else
        invocation.console.raw(document);
    return ExitStatus::done;
}

} // namespace

Command inspectProjectCommand() {
    return {
        .name = "inspect project",
        .summary = "the document, as saving would write it",
        .usages = {"FILE"},
        .positionals = {{"FILE", "the project file"}},
        .options = {},
        .examples = {"roamly inspect project Lisbon.roamly"},
        .run = run,
    };
}

} // namespace CommandLine
