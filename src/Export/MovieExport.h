// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/MovieWriter.h>
#include <Export/VideoExporter.h>
#include <Frames/FrameSource.h>
#include <Timeline/Playhead.h>
#include <Timeline/SlideshowTimeline.h>

#include <filesystem>
#include <functional>
#include <stop_token>

namespace Export {

/// What VideoExporter does, for frames of any even size.
ExportResult exportMovie(const Timeline::SlideshowTimeline& timeline, const Timeline::Playhead& playhead,
                         const MovieFormat& format, Frames::FrameSource& frameSource,
                         const std::filesystem::path& path,
                         const std::function<void(const ExportProgress&)>& progress,
                         const std::stop_token& stop);

} // namespace Export
