// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>

namespace Export {

/// Why an export ended without a movie. `what()` is one sentence for the user.
class ExportError : public std::runtime_error {
public:
    enum class Kind {
        writerSetupFailed,
        pixelBufferPoolUnavailable,
        appendFailed,
        cancelled,
        noFrames,
        /// The finished file could not be completed or put in its place; the sentence says why.
        writerFailed,
    };

    /// With the sentence that belongs to the kind.
    explicit ExportError(Kind kind);
    /// With the sentence and what the system said, in parentheses.
    ExportError(Kind kind, const std::string& detail);

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace Export
