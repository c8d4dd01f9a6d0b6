// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>

namespace Analysis {

/// How far an analysis is.
struct PipelineProgress {
    enum class Stage { geocoding, clustering, scoring, done };

    Stage stage = Stage::geocoding;
    int completed = 0;
    int total = 0;

    friend bool operator==(const PipelineProgress&, const PipelineProgress&) = default;
};

/// Owner's thread of the pipeline that reports.
using PipelineProgressCallback = std::function<void(const PipelineProgress&)>;

/// Calls `progress`, where there is one.
inline void report(const PipelineProgressCallback& progress, PipelineProgress::Stage stage,
                   std::size_t completed, std::size_t total) {
    if (progress)
        progress({stage, static_cast<int>(completed), static_cast<int>(total)});
}

} // namespace Analysis
