// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>
#include <Foundation/Instant.h>
#include <Roamly/CommandLine/JsonForms.h>

#include <array>
#include <optional>
#include <string>
#include <variant>

namespace CommandLine::JsonForms {

namespace {

using Foundation::JsonWriter;

void optionalMember(JsonWriter& json, std::string_view name, const std::optional<std::string>& text) {
    if (text)
        json.member(name, *text);
}

void writeOffset(JsonWriter& json, std::string_view name, const Timeline::Offset& offset) {
    json.key(name).beginObject().member("width", offset.width).member("height", offset.height).endObject();
}

void writeOverlay(JsonWriter& json, const Timeline::OverlaySpec& overlay) {
    json.beginObject();
    optionalMember(json, "locationText", overlay.locationText);
    json.member("isApproximate", overlay.isApproximate);
    optionalMember(json, "caption", overlay.caption);
    optionalMember(json, "chapterTitle", overlay.chapterTitle);
    json.endObject();
}

void writeSegment(JsonWriter& json, const Timeline::PhotoSegment& segment) {
    json.beginObject();
    json.member("photoID", segment.photoID.text());
    json.member("start", segment.start);
    json.member("duration", segment.duration);
    json.member("crossfadesFromPrevious", segment.crossfadesFromPrevious);
    if (segment.kenBurns) {
        json.key("kenBurns").beginObject();
        json.member("startScale", segment.kenBurns->startScale);
        json.member("endScale", segment.kenBurns->endScale);
        writeOffset(json, "startOffset", segment.kenBurns->startOffset);
        writeOffset(json, "endOffset", segment.kenBurns->endOffset);
        json.endObject();
    }
    writeOverlay(json.key("overlay"), segment.overlay);
    json.endObject();
}

void writeSegment(JsonWriter& json, const Timeline::ChapterSegment& segment) {
    json.beginObject();
    json.member("title", segment.title);
    json.member("start", segment.start);
    json.member("duration", segment.duration);
    json.endObject();
}

void writeAudio(JsonWriter& json, const Timeline::AudioPlan& audio) {
    json.beginObject();
    json.member("musicBookmark", Foundation::base64Encoded(audio.musicBookmark));
    json.member("totalDuration", audio.totalDuration);
    json.member("fadeIn", audio.fadeIn);
    json.member("fadeOut", audio.fadeOut);
    json.endObject();
}

void writeState(JsonWriter& json, const Timeline::PhotoState& state) {
    json.beginObject();
    json.member("current", state.current.photoID.text());
    json.member("progress", state.progress);
    if (state.incoming)
        json.member("incoming", state.incoming->photoID.text());
    json.member("incomingProgress", state.incomingProgress);
    json.member("incomingOpacity", state.incomingOpacity);
    json.endObject();
}

} // namespace

void write(JsonWriter& json, const ProjectModel::PhotoSource& source) {
    json.beginObject();
    json.member("id", source.id.text());
    json.key("ref").beginObject();
    if (const auto* const folder = std::get_if<ProjectModel::FolderSourceRef>(&source.ref)) {
        json.key("folder").beginObject();
        json.member("bookmark", Foundation::base64Encoded(folder->bookmark));
        json.member("displayPath", folder->displayPath);
        json.endObject();
    } else {
        const auto& album = std::get<ProjectModel::AlbumSourceRef>(source.ref);
        json.key("photoKitAlbum").beginObject();
        json.member("localIdentifier", album.localIdentifier);
        json.member("title", album.title);
        json.endObject();
    }
    json.endObject();
    json.endObject();
}

void write(JsonWriter& json, const Timeline::SlideshowTimeline& timeline) {
    json.beginObject();
    json.key("items").beginArray();
    for (const Timeline::TimelineItem& item : timeline.items) {
        json.beginObject();
        json.key(std::holds_alternative<Timeline::PhotoSegment>(item) ? "photo" : "chapter");
        std::visit([&](const auto& segment) { writeSegment(json, segment); }, item);
        json.endObject();
    }
    json.endArray();
    json.member("totalDuration", timeline.totalDuration);
    if (timeline.audio)
        writeAudio(json.key("audio"), *timeline.audio);
    json.endObject();
}

void write(JsonWriter& json, const Timeline::RenderState& state) {
    json.beginObject();
    if (const auto* const photo = std::get_if<Timeline::PhotoState>(&state))
        writeState(json.key("photo"), *photo);
    else if (const auto* const chapter = std::get_if<Timeline::ChapterSegment>(&state))
        writeSegment(json.key("chapter"), *chapter);
    else
        json.key("empty").beginObject().endObject();
    json.endObject();
}

void write(JsonWriter& json, const PhotoSources::ImportProgress& progress) {
    json.beginObject();
    json.member("completed", static_cast<std::int64_t>(progress.completed));
    json.member("total", static_cast<std::int64_t>(progress.total));
    json.endObject();
}

void write(JsonWriter& json, const Export::ExportProgress& progress) {
    json.beginObject();
    json.member("fraction", progress.fraction);
    json.member("stage", progress.stage);
    json.endObject();
}

void write(JsonWriter& json, const std::set<Foundation::Uuid>& ids) {
    json.beginArray();
    for (const Foundation::Uuid& id : ids)
        json.value(id.text());
    json.endArray();
}

void writeMembers(JsonWriter& json, const PhotoSources::ImageFileMetadata& metadata) {
    if (metadata.captureDate)
        json.member("captureDate", Foundation::iso8601(*metadata.captureDate));
    if (metadata.coordinate) {
        json.key("coordinate").beginObject();
        json.member("latitude", metadata.coordinate->latitude);
        json.member("longitude", metadata.coordinate->longitude);
        json.endObject();
    }
    json.member("captureDateIsLowConfidence", metadata.captureDateIsLowConfidence);
}

void writeMembers(JsonWriter& json, const Jobs::ImportOutcome& outcome) {
    json.member("added", static_cast<std::int64_t>(outcome.added));
    json.key("notices").beginArray();
    for (const std::string& notice : outcome.notices)
        json.value(notice);
    json.endArray();
}

void write(JsonWriter& json, const Analysis::PipelineProgress& progress) {
    constexpr std::array stages{"geocoding", "clustering", "scoring", "done"};
    json.beginObject();
    json.member("stage", stages[static_cast<std::size_t>(progress.stage)]);
    json.member("completed", progress.completed).member("total", progress.total);
    json.endObject();
}

void write(JsonWriter& json, const Captioning::CaptionProgress& progress) {
    json.beginObject();
    json.member("completed", progress.completed).member("total", progress.total);
    json.endObject();
}

void write(JsonWriter& json, const Captioning::CaptionError& error) {
    json.beginObject();
    if (const auto* unavailable = std::get_if<Captioning::BackendUnavailable>(&error.which()))
        json.member("backendUnavailable", unavailable->message);
    else if (const auto* refusal = std::get_if<Captioning::HttpFailure>(&error.which()))
        json.member("http", refusal->status);
    else if (const auto* failure = std::get_if<Captioning::TransportFailure>(&error.which()))
        json.member("transport", failure->detail);
    else
        json.key("emptyResponse").beginObject().endObject();
    json.endObject();
}

void writeMembers(JsonWriter& json, const Captioning::CaptionRun& run) {
    json.key("captions").beginObject();
    for (const auto& [id, caption] : run.captions)
        json.member(id.text(), caption);
    json.endObject();
    if (run.firstFailure)
        write(json.key("firstFailure"), *run.firstFailure);
    json.member("attempted", run.attempted);
    json.member("cancelled", run.cancelled);
}

} // namespace CommandLine::JsonForms
