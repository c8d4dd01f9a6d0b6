#include <ProjectModel/ProjectFile.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/ProjectStore.h>

namespace CommandLine {

namespace {

int run(const Invocation& invocation) {
    const ProjectModel::Project project =
        Roamly::ProjectStore::load(invocation.arguments.positionals()[0]).project;
    const std::string document = ProjectModel::encoded(project);
    if (invocation.console.isJson())
        invocation.console.result([&](Foundation::JsonWriter& json) { json.raw(document); });
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
