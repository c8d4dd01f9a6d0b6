// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JsonPlace.h"

#include <Foundation/JsonWriter.h>
#include <ProjectModel/ProjectFile.h>

#include <stdexcept>

namespace ProjectModel {

namespace {

/// Writes each record with its members in ascending order of their keys.
class ProjectEncoder {
public:
    std::string encoded(const Project& project) {
        write(project, {});
        return m_writer.takeText();
    }

private:
    template <typename Value>
    void member(const JsonPlace& place, std::string_view key, const Value& value) {
        m_writer.key(key);
        write(value, {place, key});
    }

    template <typename Value>
    void member(const JsonPlace& place, std::string_view key, const std::optional<Value>& value) {
        if (value)
            member(place, key, *value);
    }

    /// Refusals of the writer are told with the place where they happened.
    template <typename Value>
    void writeScalar(const Value& value, const JsonPlace& place, const char* refusal) {
        try {
            m_writer.value(value);
        } catch (const std::invalid_argument&) {
            throw ProjectFileError(ProjectFileError::Kind::notEncodable, place.text() + refusal);
        }
    }

    void write(bool flag, const JsonPlace&) { m_writer.value(flag); }
    void write(std::int64_t number, const JsonPlace&) { m_writer.value(number); }
    void write(double number, const JsonPlace& place) {
        writeScalar(number, place, " cannot be saved: it is not a finite number.");
    }
    void write(std::string_view text, const JsonPlace& place) {
        writeScalar(text, place, " cannot be saved: it is not valid UTF-8.");
    }
    void write(const std::string& text, const JsonPlace& place) { write(std::string_view{text}, place); }
    void write(const Foundation::Bytes& bytes, const JsonPlace&) {
        m_writer.value(Foundation::base64Encoded(bytes));
    }
    void write(const Foundation::Uuid& id, const JsonPlace&) { m_writer.value(id.text()); }

    void write(Foundation::Instant instant, const JsonPlace& place) {
        const std::string text = Foundation::iso8601(instant);
        if (Foundation::parseIso8601(text) != instant)
            throw ProjectFileError(ProjectFileError::Kind::notEncodable,
                                   place.text() + " cannot be saved: its year is not between 1 and 9999.");
        m_writer.value(text);
    }

    void write(Provenance provenance, const JsonPlace&) { m_writer.value(rawValue(provenance)); }
    void write(AIProvider provider, const JsonPlace&) { m_writer.value(rawValue(provider)); }
    void write(ChapterStyle style, const JsonPlace&) { m_writer.value(rawValue(style)); }

    template <typename Value>
    void write(const std::vector<Value>& values, const JsonPlace& place) {
        m_writer.beginArray();
        for (std::size_t i = 0; i < values.size(); ++i)
            write(values[i], {place, i});
        m_writer.endArray();
    }

    void write(const LibraryPhotoRef& ref, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "localIdentifier", ref.localIdentifier);
        m_writer.endObject();
    }

    void write(const FilePhotoRef& ref, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "bookmark", ref.bookmark);
        member(place, "displayName", ref.displayName);
        m_writer.endObject();
    }

    void write(const AlbumSourceRef& ref, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "localIdentifier", ref.localIdentifier);
        member(place, "title", ref.title);
        m_writer.endObject();
    }

    void write(const FolderSourceRef& ref, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "bookmark", ref.bookmark);
        member(place, "displayPath", ref.displayPath);
        m_writer.endObject();
    }

    static std::string_view caseKey(const LibraryPhotoRef&) { return "photoKit"; }
    static std::string_view caseKey(const FilePhotoRef&) { return "file"; }
    static std::string_view caseKey(const AlbumSourceRef&) { return "photoKitAlbum"; }
    static std::string_view caseKey(const FolderSourceRef&) { return "folder"; }

    template <typename... Cases>
    void write(const std::variant<Cases...>& choice, const JsonPlace& place) {
        m_writer.beginObject();
        std::visit([&](const auto& payload) { member(place, caseKey(payload), payload); }, choice);
        m_writer.endObject();
    }

    void write(const PhotoSource& source, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "id", source.id);
        member(place, "ref", source.ref);
        m_writer.endObject();
    }

    void write(const Coordinate& coordinate, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "latitude", coordinate.latitude);
        member(place, "longitude", coordinate.longitude);
        m_writer.endObject();
    }

    void write(const ResolvedLocation& location, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "city", location.city);
        member(place, "country", location.country);
        member(place, "provenance", location.provenance);
        m_writer.endObject();
    }

    void write(const PhotoItem& photo, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "caption", photo.caption);
        member(place, "captionProvenance", photo.captionProvenance);
        member(place, "captureDate", photo.captureDate);
        member(place, "clusterID", photo.clusterID);
        member(place, "coordinate", photo.coordinate);
        member(place, "id", photo.id);
        member(place, "isMissing", photo.isMissing);
        member(place, "isSelected", photo.isSelected);
        member(place, "location", photo.location);
        member(place, "qualityScore", photo.qualityScore);
        member(place, "selectionProvenance", photo.selectionProvenance);
        member(place, "source", photo.source);
        member(place, "sourceID", photo.sourceID);
        m_writer.endObject();
    }

    void write(const ProjectSettings& settings, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "aiCaptionsEnabled", settings.aiCaptionsEnabled);
        member(place, "aiProvider", settings.aiProvider);
        member(place, "captionPrompt", settings.captionPrompt);
        member(place, "captionsEnabled", settings.captionsEnabled);
        member(place, "chapterStyle", settings.chapterStyle);
        member(place, "kenBurnsEnabled", settings.kenBurnsEnabled);
        member(place, "photoDuration", settings.photoDuration);
        m_writer.endObject();
    }

    void write(const MusicSelection& music, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "bookmark", music.bookmark);
        member(place, "displayName", music.displayName);
        m_writer.endObject();
    }

    void write(const Project& project, const JsonPlace& place) {
        m_writer.beginObject();
        member(place, "music", project.music);
        member(place, "photos", project.photos);
        // The layout written here is this one, whatever the value was read from.
        member(place, "schemaVersion", Project::currentSchemaVersion);
        member(place, "settings", project.settings);
        member(place, "sources", project.sources);
        member(place, "usesManualOrder", project.usesManualOrder);
        m_writer.endObject();
    }

    Foundation::JsonWriter m_writer{Foundation::JsonWriter::Layout::Pretty};
};

} // namespace

std::string encoded(const Project& project) {
    return ProjectEncoder{}.encoded(project);
}

} // namespace ProjectModel
