// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/PipelineProgress.h>
#include <Captioning/CaptionPipeline.h>
#include <Export/VideoExporter.h>
#include <Foundation/JsonWriter.h>
#include <Foundation/Uuid.h>
#include <PhotoSources/FolderImporter.h>
#include <PhotoSources/ImageFileMetadata.h>
#include <ProjectModel/PhotoSource.h>
#include <Roamly/Jobs/ImportCoordinator.h>
#include <Timeline/RenderState.h>
#include <Timeline/SlideshowTimeline.h>

#include <set>
#include <string_view>

/// The records as the command line prints them: their own member names, absent members left out.
namespace CommandLine::JsonForms {

void write(Foundation::JsonWriter& json, const ProjectModel::PhotoSource& source);
void write(Foundation::JsonWriter& json, const Timeline::SlideshowTimeline& timeline);
void write(Foundation::JsonWriter& json, const Timeline::RenderState& state);
void write(Foundation::JsonWriter& json, const PhotoSources::ImportProgress& progress);
void write(Foundation::JsonWriter& json, const Export::ExportProgress& progress);
void write(Foundation::JsonWriter& json, const Analysis::PipelineProgress& progress);
void write(Foundation::JsonWriter& json, const Captioning::CaptionProgress& progress);
void write(Foundation::JsonWriter& json, const Captioning::CaptionError& error);
void write(Foundation::JsonWriter& json, const std::set<Foundation::Uuid>& ids);

/// Members of an object that is open already.
void writeMembers(Foundation::JsonWriter& json, const PhotoSources::ImageFileMetadata& metadata);
void writeMembers(Foundation::JsonWriter& json, const Jobs::ImportOutcome& outcome);
void writeMembers(Foundation::JsonWriter& json, const Captioning::CaptionRun& run);

} // namespace CommandLine::JsonForms
