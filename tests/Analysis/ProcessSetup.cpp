// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ProcessSetup.h>

#include <gtest/gtest.h>

namespace {

/// What the program does when it starts.
class ProcessSetup : public testing::Environment {
public:
    void SetUp() override { PhotoSources::prepareDecoding(); }
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new ProcessSetup);

} // namespace
