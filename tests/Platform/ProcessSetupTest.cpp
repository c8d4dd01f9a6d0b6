// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/AnalysisEngine.h>
#include <Roamly/Platform/ProcessSetup.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

namespace Platform {
namespace {

TEST(ProcessSetupTest, LetsTheProgramBeHeardOnStandardErrorAndNotItsNetworks) {
    prepareProcess();
    testing::internal::CaptureStderr();
    const VisionEngine engine;
    std::cerr << "an operator is registered twice\n";
    std::fputs("The file is missing.\n", stderr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "The file is missing.\n");
}

} // namespace
} // namespace Platform
