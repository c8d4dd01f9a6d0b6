// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>
#include <ProjectModel/RandomProject.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace ProjectModel {
namespace {

/// Reads the bytes: either refused as they should be, or a project that can be written and read again.
/// Returns whether they were read.
bool survives(const std::string& bytes) {
    Project project;
    try {
        project = decodeProject(bytes, [] { return Foundation::Uuid{}; });
    } catch (const ProjectFileError& error) {
        EXPECT_TRUE(Foundation::isValidUtf8(error.what())) << error.what();
        EXPECT_EQ(std::string_view{error.what()}.find('\n'), std::string_view::npos) << error.what();
        EXPECT_FALSE(std::string_view{error.what()}.empty());
        return false;
    }
    EXPECT_EQ(project.schemaVersion, 2);
    EXPECT_EQ(decodeProject(encoded(project)), project) << bytes;
    return true;
}

TEST(ProjectFileFuzzTest, RandomBytesInAProjectAreReadOrRefused) {
    Testing::RandomProject random{41};
    int read = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string bytes = encoded(random.project(3));
        for (std::size_t j = 1 + random.below(4); j > 0; --j) {
            const std::size_t position = random.below(bytes.size());
            switch (random.below(4)) {
            case 0:
                bytes[position] = static_cast<char>(random.below(256));
                break;
            case 1:
                bytes.erase(position, random.below(20));
                break;
            case 2:
                bytes.insert(position, bytes.substr(random.below(bytes.size()), random.below(40)));
                break;
            default:
                bytes.insert(position, 1,
                             random.pick({'{', '}', '[', ']', '"', ',', ':', '\\', '0', '-', 'e', '\0'}));
                break;
            }
            if (bytes.empty())
                break;
        }
        read += survives(bytes);
    }
    EXPECT_GT(read, 100);
    EXPECT_LT(read, 2900);
}

/// Where the JSON values of a pretty-printed document stand that fit on the rest of a line.
struct Piece {
    std::size_t position;
    std::size_t length;
};

std::vector<Piece> valuesOf(const std::string& document) {
    std::vector<Piece> values;
    for (std::size_t colon = document.find("\": "); colon != std::string::npos;
         colon = document.find("\": ", colon + 1)) {
        const std::size_t position = colon + 3;
        std::size_t end = document.find('\n', position);
        if (document[end - 1] == ',')
            --end;
        values.push_back({position, end - position});
    }
    return values;
}

TEST(ProjectFileFuzzTest, ValuesOfOtherTypesAreReadOrRefused) {
    Testing::RandomProject random{42};
    const auto value = [&]() -> std::string {
        return random.pick<std::string>({"null",
                                         "true",
                                         "false",
                                         "0",
                                         "-1",
                                         "2",
                                         "3",
                                         "2.5",
                                         "1e308",
                                         "1e309",
                                         "1e-400",
                                         "-0",
                                         "18446744073709551616",
                                         "\"\"",
                                         "\"user\"",
                                         "\"card\"",
                                         "\"apple\"",
                                         "\"2023-07-14T16:22:05Z\"",
                                         "\"AAAA\"",
                                         "\"\\u0000\"",
                                         "\"00000000-0000-4000-8000-000000000000\"",
                                         "[]",
                                         "{}",
                                         "[null]",
                                         "{\"file\":{}}",
                                         "{\"photoKit\":null}",
                                         "{\"photoKit\":{\"localIdentifier\":\"x\"}}",
                                         "[[[[[[[[]]]]]]]]",
                                         "{\"latitude\":1,\"longitude\":2}"});
    };
    int read = 0;
    for (int i = 0; i < 5000; ++i) {
        std::string document = encoded(random.project(3));
        const std::vector<Piece> values = valuesOf(document);
        const auto [position, length] = values[random.below(values.size())];
        // The beginning of a list or object gets a closed value before it, which is no JSON: a rare case is
        // enough.
        const char first = document[position];
        if ((first == '{' || first == '[') && length == 1 && random.chance(0.95))
            continue;
        document.replace(position, length, value());
        read += survives(document);
    }
    EXPECT_GT(read, 300);
    EXPECT_LT(read, 4000);
}

TEST(ProjectFileFuzzTest, LostLinesAreReadOrRefused) {
    Testing::RandomProject random{43};
    int read = 0;
    for (int i = 0; i < 2000; ++i) {
        std::string document = encoded(random.project(2));
        const std::size_t line = document.find('\n', random.below(document.size()));
        if (line == std::string::npos)
            continue;
        document.erase(line, document.find('\n', line + 1) - line);
        read += survives(document);
    }
    EXPECT_GT(read, 50);
}

TEST(ProjectFileFuzzTest, RandomBytesAreRefused) {
    Testing::RandomProject random{44};
    for (int i = 0; i < 2000; ++i) {
        const Foundation::Bytes bytes = random.bytes(60);
        EXPECT_FALSE(survives({bytes.begin(), bytes.end()}));
    }
}

} // namespace
} // namespace ProjectModel
