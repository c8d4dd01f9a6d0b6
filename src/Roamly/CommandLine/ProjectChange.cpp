// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/Counted.h>
#include <Roamly/CommandLine/ProjectChange.h>
#include <Roamly/CommandLine/ProjectOpening.h>
#include <Roamly/Document/ReviewModel.h>

namespace CommandLine {

int changeProject(const Invocation& invocation,
                  const std::function<void(Document::ProjectDocument&)>& change) {
    Document::DocumentSession session{invocation.arguments.positionals()[0], waitFor(invocation),
                                      Document::DocumentSession::Lock::UntilWritten};
    change(session.document());
    if (session.save(waitFor(invocation))) {
        const std::size_t selected = Document::ReviewModel{session.document()}.selectedCount();
        invocation.console.say("Saved: " + counted(session.project().photos.size(), "photo") + ", " +
                               std::to_string(selected) + " selected.");
    } else {
        invocation.console.say("Nothing to change.");
    }
    invocation.console.report([](Foundation::JsonWriter& json) { json.beginObject().endObject(); });
    return ExitStatus::done;
}

} // namespace CommandLine
