// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

namespace CommandLine {

/// What text needs to be laid out: a graphics application without a display. Commands that draw make one
/// before any worker thread starts and keep it while they run; the others do without, since it takes its
/// time.
class OffscreenApplication {
public:
    OffscreenApplication();
    ~OffscreenApplication();
    OffscreenApplication(const OffscreenApplication&) = delete;
    OffscreenApplication& operator=(const OffscreenApplication&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace CommandLine
