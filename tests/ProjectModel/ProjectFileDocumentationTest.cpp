// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <ProjectModel/ProjectFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace ProjectModel {
namespace {

/// The text between the marks of the page's last block of JSON.
std::string documentedExample() {
    const std::string page =
        Foundation::readFile(std::filesystem::path{ROAMLY_DOCS_FOLDER} / "project-file.md");
    constexpr std::string_view opening = "```json\n";
    const std::size_t begin = page.rfind(opening);
    const std::size_t end = page.rfind("\n```");
    if (begin == std::string::npos || end == std::string::npos || end < begin)
        return {};
    return page.substr(begin + opening.size(), end - begin - opening.size());
}

TEST(ProjectFileDocumentationTest, ShowsAnExampleByteForByteAsItIsWritten) {
    const std::string example = documentedExample();
    ASSERT_FALSE(example.empty());
    const Project project = decodeProject(example);
    EXPECT_EQ(project.photos.size(), 2U);
    EXPECT_EQ(encoded(project), example);
}

} // namespace
} // namespace ProjectModel
