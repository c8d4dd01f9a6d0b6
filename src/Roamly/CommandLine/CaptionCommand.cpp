// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Awaiting.h>
#include <Roamly/CommandLine/Commands.h>
#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/JsonForms.h>
#include <Roamly/CommandLine/ProjectOpening.h>
#include <Roamly/CommandLine/Prompt.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/OpenRouterKey.h>
#include <Roamly/Platform/SettingsStore.h>

namespace CommandLine {

namespace {

using Jobs::CaptionController;
using ProjectModel::AIProvider;

AIProvider provider(const Invocation& invocation, const ProjectModel::Project& project,
                    const Document::AppSettings& settings) {
    const AIProvider inEffect = effectiveProvider(project.settings, settings);
    const std::optional<std::string> typed = invocation.arguments.value("--provider");
    if (!typed)
        return inEffect;
    const std::optional<AIProvider> chosen = ProjectModel::aiProviderFromRawValue(*typed);
    if (!chosen)
        throw UsageError("“" + *typed + "” is no provider; it is apple, ollama or openRouter.");
    if (const auto confirmation = Document::privacyConfirmation(*chosen, inEffect))
        confirm(*confirmation, invocation.arguments.has("--yes"), invocation.console, invocation.stop);
    return *chosen;
}

int run(const Invocation& invocation) {
    std::optional<Foundation::Uuid> photo;
    if (const std::optional<std::string> typed = invocation.arguments.value("--photo"))
        photo = Values::uuid(*typed);

    Document::DocumentSession session = openForLongWork(invocation.arguments.positionals()[0], invocation);
    const Document::AppSettings settings = Platform::SettingsStore{}.load();
    Document::checkAllowsAICaptions(session.project().settings, settings);
    const AIProvider chosen = provider(invocation, session.project(), settings);
    if (const auto alert = Document::privacyAlert(chosen)) {
        invocation.console.say(*alert);
        if (const auto problem = Platform::OpenRouterKey::readingProblem())
            invocation.console.warn(*problem);
    }

    CaptionController* running = nullptr;
    const auto show = [&] {
        const CaptionController::State& state = running->state();
        if (!state.isRunning || !state.progress)
            return;
        const double fraction =
            static_cast<double>(state.progress->completed) / std::max(1, state.progress->total);
        invocation.console.progress(*state.progressText, fraction, [&](Foundation::JsonWriter& json) {
            JsonForms::write(json, *state.progress);
        });
    };
    Jobs::ActionQueue queue;
    CaptionController controller{queue.executor(), Platform::systemCaptionEnvironment(), show};
    running = &controller;
    if (photo)
        controller.regenerate(*photo, session.document(), chosen);
    else
        controller.run(session.document(), chosen);
    const std::exception_ptr unshown = await(
        queue, invocation.stop, [&] { return !controller.state().isRunning; }, [&] { controller.cancel(); });
    // What arrived is in the document, also after an interruption, and is kept whatever else goes wrong. No
    // interruption ends the waiting for it.
    session.saveMerged({.waiting = waitFor(invocation).waiting});
    if (unshown)
        std::rethrow_exception(unshown);

    const CaptionController::State& state = controller.state();
    const Captioning::CaptionRun result = state.run.value_or(Captioning::CaptionRun{});
    invocation.console.report([&](Foundation::JsonWriter& json) {
        json.beginObject();
        JsonForms::writeMembers(json, result);
        if (state.errorText)
            json.member("errorText", *state.errorText);
        json.endObject();
    });
    const std::string outcome = "Captioned " + counted(result.captions.size(), "photo") + ".";
    if (result.cancelled)
        throw Interrupted("Interrupted. " + outcome);
    invocation.console.say(outcome);
    if (state.errorText)
        throw Failure(*state.errorText);
    return ExitStatus::done;
}

} // namespace

Command captionCommand() {
    return {
        .name = "caption",
        .summary = "let a language model write captions",
        .usages = {"PROJECT [--provider PROVIDER] [--photo ID] [--yes]"},
        .positionals = {{"PROJECT", "the project file"}},
        .options = {{.name = "--provider",
                     .value = "PROVIDER",
                     .help = "apple, ollama or openRouter, for this run alone; otherwise the project’s",
                     .choices = {"apple", "ollama", "openRouter"}},
                    {"--photo", "ID", "caption this photo only, even over a caption that you typed"},
                    {"--yes", {}, "confirm that photos leave this computer, for openRouter"}},
        .details = "Captions the selected photos, one after the other. Captions that you typed are kept.\n"
                   "Ollama runs on this computer (see “roamly settings ollamaModel”); OpenRouter is a cloud\n"
                   "service that receives each photo and needs a key (see “roamly settings key”).\n"
                   "Interrupted with Ctrl-C, the captions that arrived are kept.",
        .examples = {"roamly caption Lisbon.roamly", "roamly caption Lisbon.roamly --provider ollama"},
        .run = run,
    };
}

} // namespace CommandLine
