// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportPreset.h>
#include <ProjectModel/AIProvider.h>
#include <ProjectModel/ChapterStyle.h>

#include <optional>
#include <string>

namespace Document {

/// The user's settings for all projects. The members' initial values are the defaults that hold wherever
/// nothing is stored.
struct AppSettings {
    /// Seconds; positive and finite.
    double photoDuration = 5.0;
    bool kenBurnsEnabled = true;
    ProjectModel::ChapterStyle chapterStyle = ProjectModel::ChapterStyle::card;
    bool captionsEnabled = true;
    bool aiCaptionsEnabled = true;
    Export::ExportResolution exportResolution = Export::ExportResolution::p1080;
    Export::ExportCodec exportCodec = Export::ExportCodec::h264;
    ProjectModel::AIProvider defaultAIProvider = ProjectModel::AIProvider::apple;
    std::string ollamaBaseURL = "http://127.0.0.1:11434";
    std::string ollamaModel = "llava";
    std::string openRouterModel = "openai/gpt-4o-mini";
    /// Guidance for generated captions of projects that have none of their own.
    std::optional<std::string> captionPrompt;
    /// A server that speaks Nominatim's protocol and is to name places; without one they are named on this
    /// machine.
    std::optional<std::string> geocoderURL;

    friend bool operator==(const AppSettings&, const AppSettings&) = default;
};

} // namespace Document
