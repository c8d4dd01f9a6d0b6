// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/ProjectOpening.h>

namespace CommandLine {

Document::LockWait waitFor(const Invocation& invocation) {
    return {.stop = invocation.stop, .waiting = [&console = invocation.console] {
                console.say("Waiting for another command that is changing the project.");
            }};
}

Document::DocumentSession openForLongWork(const std::filesystem::path& path, const Invocation& invocation) {
    Document::DocumentSession session{path, waitFor(invocation)};
    session.checkCanSave();
    return session;
}

} // namespace CommandLine
