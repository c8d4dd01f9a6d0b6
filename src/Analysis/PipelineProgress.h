#pragma once

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

/// Called in the thread that analyses.
using PipelineProgressCallback = std::function<void(const PipelineProgress&)>;

} // namespace Analysis
