// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>

namespace GazetteerBuilder {

/// Where everything lies that the files are made of.
class Sources {
public:
    /// `packages` is what tools/fetch-data prints, `corrections` the folder of the manifest of packages and
    /// of our own tables (data/).
    Sources(std::filesystem::path packages, std::filesystem::path corrections);

    /// The folder of a package's files, in the version that the manifest pins. Throws std::runtime_error when
    /// the manifest does not know the package.
    [[nodiscard]] std::filesystem::path package(const std::string& name) const;
    /// Whose work the package is, in a line. Throws likewise.
    [[nodiscard]] std::string attribution(const std::string& name) const;
    [[nodiscard]] std::filesystem::path correction(const std::string& name) const;

private:
    std::filesystem::path m_packages;
    std::filesystem::path m_corrections;
};

} // namespace GazetteerBuilder
