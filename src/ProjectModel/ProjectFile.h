// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/Project.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ProjectModel {

/// Why a project file could not be read or written. `what()` is one sentence for the user.
class ProjectFileError : public std::runtime_error {
public:
    enum class Kind {
        /// Not JSON, not an object, a number that JSON's reader cannot hold, a text that is no date, UUID,
        /// base64
        /// or known enumeration value.
        dataCorrupted,
        /// A value of another JSON type than the layout says, or an enumeration object without exactly one
        /// case.
        typeMismatch,
        /// A required member is missing.
        keyNotFound,
        /// Written by a newer version of the program.
        newerSchema,
        /// A value that JSON cannot hold (a number that is not finite, text that is not UTF-8).
        notEncodable,
    };

    ProjectFileError(Kind kind, const std::string& message);
    /// The `newerSchema` error.
    ProjectFileError(std::int64_t foundVersion, std::int64_t newestSupported);

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// For `newerSchema` alone; otherwise 0.
    [[nodiscard]] std::int64_t foundVersion() const { return m_foundVersion; }
    [[nodiscard]] std::int64_t newestSupported() const { return m_newestSupported; }

    friend bool operator==(const ProjectFileError& a, const ProjectFileError& b) {
        return a.m_kind == b.m_kind && a.m_foundVersion == b.m_foundVersion &&
               a.m_newestSupported == b.m_newestSupported;
    }

private:
    Kind m_kind;
    std::int64_t m_foundVersion = 0;
    std::int64_t m_newestSupported = 0;
};

/// The document's bytes: pretty-printed JSON in UTF-8, members sorted by key. Throws ProjectFileError.
[[nodiscard]] std::string encoded(const Project& project);

/// Reads the current layout and migrates version 1, whose sources get identifiers from `newID`. Never a
/// partial result: throws ProjectFileError.
[[nodiscard]] Project decodeProject(std::string_view bytes,
                                    const Foundation::UuidSource& newID = Foundation::Uuid::random);

} // namespace ProjectModel
