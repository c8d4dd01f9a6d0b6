// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Program.h"

#include <gtest/gtest.h>

#include <string>

/// The program in a folder with a few photos: trip/1.jpg to trip/3.jpg, a day apart.
class EndToEndTest : public testing::Test {
protected:
    EndToEndTest();

    Ran run(const std::vector<std::string>& words) { return program.run(words); }
    /// Runs it, expects it to succeed and gives what it reported.
    nlohmann::json done(std::vector<std::string> words);
    /// Expects a failure of the status, with a sentence and no result.
    void expectFailure(int status, const std::vector<std::string>& words);

    /// Makes p.roamly with the three photos.
    void makeProject();
    /// A second of music.
    void writeTone(std::string_view file);
    [[nodiscard]] std::string text(std::string_view file) const;
    [[nodiscard]] nlohmann::json project(std::string_view file = "p.roamly") const;
    [[nodiscard]] std::string photoID(std::size_t position) const;
    /// What stands in the working folder, hidden files included.
    [[nodiscard]] std::vector<std::string> files() const;

    Program program;
};
