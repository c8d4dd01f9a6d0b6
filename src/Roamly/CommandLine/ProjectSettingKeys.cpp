#include <Roamly/CommandLine/ProjectSettingKeys.h>
#include <Roamly/Document/SettingValue.h>

#include <array>
#include <string>

namespace CommandLine {

namespace {

using ProjectModel::ProjectSettings;
namespace SettingValue = Document::SettingValue;

template <auto Member, auto Parse>
constexpr ProjectSettingKey key(std::string_view name, std::string_view accepts) {
    return {name, accepts,
            [](ProjectSettings& settings, std::string_view text) {
                const auto value = Parse(text);
                if (value)
                    settings.*Member = *value;
                return value.has_value();
            },
            [](ProjectSettings& settings) { (settings.*Member).reset(); }};
}

std::optional<std::string> anyText(std::string_view text) {
    return std::string{text};
}

constexpr std::array keys{
    key<&ProjectSettings::photoDuration, SettingValue::positiveNumber>("photoDuration",
                                                                       "a number of seconds above 0"),
    key<&ProjectSettings::kenBurnsEnabled, SettingValue::boolean>("kenBurnsEnabled", "true or false"),
    key<&ProjectSettings::captionsEnabled, SettingValue::boolean>("captionsEnabled", "true or false"),
    key<&ProjectSettings::aiCaptionsEnabled, SettingValue::boolean>("aiCaptionsEnabled", "true or false"),
    key<&ProjectSettings::chapterStyle, ProjectModel::chapterStyleFromRawValue>("chapterStyle",
                                                                                "card or overlay"),
    key<&ProjectSettings::aiProvider, ProjectModel::aiProviderFromRawValue>("aiProvider",
                                                                            "apple, ollama or openRouter"),
    key<&ProjectSettings::captionPrompt, anyText>("captionPrompt", "any text"),
};

} // namespace

std::span<const ProjectSettingKey> projectSettingKeys() {
    return keys;
}

} // namespace CommandLine
