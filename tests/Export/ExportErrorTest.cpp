// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Export::ExportError;
using Kind = ExportError::Kind;

TEST(ExportErrorTest, EveryKindIsOneSentence) {
    for (const Kind kind : {Kind::writerSetupFailed, Kind::pixelBufferPoolUnavailable, Kind::appendFailed,
                            Kind::cancelled, Kind::noFrames, Kind::writerFailed}) {
        const ExportError error(kind);
        const std::string text = error.what();
        EXPECT_EQ(error.kind(), kind);
        EXPECT_EQ(text.find('.'), text.size() - 1) << text;
        EXPECT_TRUE(text.front() >= 'A' && text.front() <= 'Z') << text;
    }
}

TEST(ExportErrorTest, NoFramesSaysWhatToDo) {
    EXPECT_STREQ(ExportError(Kind::noFrames).what(), "There is nothing to export: no photo is selected.");
}

TEST(ExportErrorTest, DetailStandsInParentheses) {
    EXPECT_STREQ(ExportError(Kind::writerFailed, "/films/a.mov: No space left on device").what(),
                 "The movie file could not be completed (/films/a.mov: No space left on device).");
}

} // namespace
