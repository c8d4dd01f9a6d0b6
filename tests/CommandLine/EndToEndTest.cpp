// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/TestPhotos.h>
#include <Support/TestTone.h>

#include <algorithm>
#include <cstdint>

EndToEndTest::EndToEndTest() {
    TestPhotos::write(program / "trip/1.jpg", {.colour = 0xC02020, .date = "2024:05:01 10:00:00"});
    TestPhotos::write(program / "trip/2.jpg", {.colour = 0x20C020, .date = "2024:05:02 10:00:00"});
    TestPhotos::write(program / "trip/3.jpg", {.colour = 0x2020C0, .date = "2024:05:03 10:00:00"});
}

nlohmann::json EndToEndTest::done(std::vector<std::string> words) {
    words.emplace_back("--json");
    const Ran ran = run(words);
    EXPECT_EQ(ran.status, 0) << ran.err;
    return ran.result();
}

void EndToEndTest::expectFailure(int status, const std::vector<std::string>& words) {
    std::string call;
    for (const std::string& word : words)
        call += " " + word;
    const Ran ran = run(words);
    EXPECT_EQ(ran.status, status) << call << "\n" << ran.err;
    EXPECT_EQ(ran.out, "") << call;
    EXPECT_TRUE(ran.err.starts_with("roamly: ")) << call << "\n" << ran.err;
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), status == 2 ? 2 : 1) << call << "\n"
                                                                                     << ran.err;
}

void EndToEndTest::makeProject() {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    ASSERT_EQ(run({"import", "p.roamly", "trip"}).status, 0);
}

void EndToEndTest::writeTone(std::string_view file) {
    TestTone::write(program / file);
}

std::string EndToEndTest::text(std::string_view file) const {
    return Foundation::readFile(program / file);
}

nlohmann::json EndToEndTest::project(std::string_view file) const {
    return nlohmann::json::parse(text(file));
}

std::string EndToEndTest::photoID(std::size_t position) const {
    return project()["photos"].at(position)["id"];
}

std::vector<std::string> EndToEndTest::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator{program.folder()})
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}
