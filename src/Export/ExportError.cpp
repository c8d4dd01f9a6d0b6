// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>

namespace Export {

namespace {

/// The kind's sentence without its period, so that a detail can follow in parentheses.
std::string sentence(ExportError::Kind kind) {
    switch (kind) {
    case ExportError::Kind::writerSetupFailed:
        return "The movie file could not be set up";
    case ExportError::Kind::pixelBufferPoolUnavailable:
        return "There is not enough memory for the movie's frames";
    case ExportError::Kind::appendFailed:
        return "A picture or the music could not be added to the movie";
    case ExportError::Kind::cancelled:
        return "The export was cancelled";
    case ExportError::Kind::noFrames:
        return "There is nothing to export: no photo is selected";
    case ExportError::Kind::writerFailed:
        return "The movie file could not be completed";
    }
    return "The export failed";
}

} // namespace

ExportError::ExportError(Kind kind)
    : std::runtime_error(sentence(kind) + ".")
    , m_kind(kind) {}

ExportError::ExportError(Kind kind, const std::string& detail)
    : std::runtime_error(sentence(kind) + " (" + detail + ").")
    , m_kind(kind) {}

} // namespace Export
