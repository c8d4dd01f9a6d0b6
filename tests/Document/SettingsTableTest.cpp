// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/SettingsTable.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace {

using Document::AppSettings;
using Document::findProjectSetting;
using Document::findUserSetting;
using Document::Setting;
using Document::settingsTable;
using ProjectModel::ProjectSettings;

/// For each setting a value that is not its default.
const std::map<std::string, std::string, std::less<>> values{
    {"photoDuration", "7.25"},       {"kenBurnsEnabled", "false"},
    {"chapterStyle", "overlay"},     {"captionsEnabled", "false"},
    {"aiCaptionsEnabled", "false"},  {"exportResolution", "p2160"},
    {"exportCodec", "hevc"},         {"defaultAIProvider", "ollama"},
    {"ollamaBaseURL", "http://h:1"}, {"ollamaModel", ""},
    {"openRouterModel", "some/one"}, {"captionPrompt", "dry, 日本\nsecond line"},
    {"geocoderURL", "https://g/n"}};

template <typename Record>
std::string json(const Document::SettingAccess<Record>& access, const Record& record) {
    Foundation::JsonWriter writer{Foundation::JsonWriter::Layout::Compact};
    access.write(writer, record);
    return writer.text();
}

template <typename Record>
void expectRoundTrip(const Document::SettingAccess<Record>& access, const std::string& value) {
    Record record;
    ASSERT_TRUE(access.assign(record, value)) << access.name;
    EXPECT_EQ(access.text(record), value) << access.name;
    EXPECT_NE(record, Record{}) << access.name;
    access.clear(record);
    EXPECT_EQ(record, Record{}) << access.name;
}

} // namespace

TEST(SettingsTableTest, NamesAreUniqueAndLeadToTheirSetting) {
    std::set<std::string_view> names;
    for (const Setting& setting : settingsTable()) {
        EXPECT_TRUE(names.insert(setting.user.name).second) << setting.user.name;
        EXPECT_EQ(findUserSetting(setting.user.name), &setting);
        if (setting.project) {
            EXPECT_EQ(findProjectSetting(setting.project->name), &setting);
        }
    }
    EXPECT_EQ(findUserSetting("colour"), nullptr);
    EXPECT_EQ(findUserSetting("aiProvider"), nullptr);
    EXPECT_EQ(findProjectSetting("defaultAIProvider"), nullptr);
    EXPECT_EQ(findProjectSetting("exportCodec"), nullptr);
    EXPECT_EQ(findUserSetting(""), nullptr);
}

TEST(SettingsTableTest, EveryValueIsReadBackAndClearedInBothPlaces) {
    ASSERT_EQ(values.size(), settingsTable().size());
    for (const Setting& setting : settingsTable()) {
        const std::string& value = values.at(std::string{setting.user.name});
        expectRoundTrip(setting.user, value);
        if (setting.project)
            expectRoundTrip(*setting.project, value);
    }
}

TEST(SettingsTableTest, AProjectMayHaveEverythingThatItsRecordHolds) {
    ProjectSettings all;
    for (const Setting& setting : settingsTable()) {
        if (setting.project)
            setting.project->assign(all, values.at(std::string{setting.user.name}));
    }
    EXPECT_TRUE(all.photoDuration && all.kenBurnsEnabled && all.captionsEnabled && all.aiCaptionsEnabled &&
                all.chapterStyle && all.aiProvider && all.captionPrompt);
}

TEST(SettingsTableTest, ATextThatIsNoValueChangesNothingAndIsExplained) {
    const std::map<std::string, std::string> wrong{{"photoDuration", "0"},     {"kenBurnsEnabled", "yes"},
                                                   {"chapterStyle", "Card"},   {"exportResolution", "4K"},
                                                   {"defaultAIProvider", "x"}, {"ollamaBaseURL", "host"},
                                                   {"ollamaModel", "\xFF"},    {"captionPrompt", "\xFF"}};
    for (const auto& [name, text] : wrong) {
        const Setting& setting = *findUserSetting(name);
        AppSettings user;
        EXPECT_FALSE(setting.user.assign(user, text)) << name;
        EXPECT_EQ(user, AppSettings{}) << name;
        ProjectSettings own;
        if (setting.project) {
            EXPECT_FALSE(setting.project->assign(own, text)) << name;
        }
        EXPECT_EQ(own, ProjectSettings{}) << name;
    }
    EXPECT_EQ(noValueSentence(*findProjectSetting("aiProvider"), "aiProvider", "gpt"),
              "“gpt” is no value for aiProvider; it takes apple, ollama or openRouter.");
}

TEST(SettingsTableTest, ValuesAreWrittenAsTypedJson) {
    AppSettings user;
    EXPECT_EQ(json(findUserSetting("photoDuration")->user, user), "5");
    EXPECT_EQ(json(findUserSetting("kenBurnsEnabled")->user, user), "true");
    EXPECT_EQ(json(findUserSetting("chapterStyle")->user, user), "\"card\"");
    EXPECT_EQ(json(findUserSetting("exportResolution")->user, user), "\"p1080\"");
    EXPECT_EQ(json(findUserSetting("captionPrompt")->user, user), "null");
    user.captionPrompt = "a \"quoted\" one";
    EXPECT_EQ(json(findUserSetting("captionPrompt")->user, user), "\"a \\\"quoted\\\" one\"");
    ProjectSettings own;
    EXPECT_EQ(json(*findProjectSetting("aiProvider")->project, own), "null");
    own.aiProvider = ProjectModel::AIProvider::ollama;
    EXPECT_EQ(json(*findProjectSetting("aiProvider")->project, own), "\"ollama\"");
}
