#pragma once

#include <ProjectModel/ProjectSettings.h>

#include <span>
#include <string_view>

namespace CommandLine {

/// One of a project's settings as it is named and typed.
struct ProjectSettingKey {
    std::string_view name;
    /// What a value may be, to complete "it takes …".
    std::string_view accepts;
    /// False when the text is no value for this key, and nothing changes.
    bool (*assign)(ProjectModel::ProjectSettings& settings, std::string_view text);
    void (*clear)(ProjectModel::ProjectSettings& settings);
};

[[nodiscard]] std::span<const ProjectSettingKey> projectSettingKeys();

} // namespace CommandLine
