// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>

namespace Document {

/// What the user asked for may not be done. `what()` is one sentence for the user, whichever front end shows
/// it.
class Refusal : public std::runtime_error {
public:
    enum class Kind {
        /// A file to write has no name.
        noFileName,
        /// One file is to be both the movie and the project.
        movieIsProject,
        /// A file to write is something else than a file, or nothing may be written where it lies.
        outputNotWritable,
        /// A file to write is one that the work is made from.
        outputIsInput,
        /// There is no file, or one that no music can be read from.
        noMusic,
        /// The music is there and cannot be played.
        musicNotPlayable,
        /// Generated captions are turned off.
        aiCaptionsOff,
    };

    Refusal(Kind kind, const std::string& sentence)
        : std::runtime_error(sentence)
        , m_kind(kind) {}

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

/// Whether the request makes no sense whatever the files hold, so that trying again cannot help.
[[nodiscard]] constexpr bool isMisuse(Refusal::Kind kind) {
    return kind == Refusal::Kind::noFileName || kind == Refusal::Kind::movieIsProject;
}

} // namespace Document
