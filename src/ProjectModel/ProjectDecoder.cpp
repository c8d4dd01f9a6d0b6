// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "JsonRecord.h"

#include <ProjectModel/ProjectFile.h>

#include <cmath>
#include <utility>

namespace ProjectModel {

namespace {

using Kind = ProjectFileError::Kind;

const std::string& readText(const JsonValue& value, const JsonPlace& place) {
    const auto* text = std::get_if<std::string>(&value.content);
    if (!text)
        throw mismatchAt(place, value, "a text");
    return *text;
}

bool readBoolean(const JsonValue& value, const JsonPlace& place) {
    const auto* flag = std::get_if<bool>(&value.content);
    if (!flag)
        throw mismatchAt(place, value, "true or false");
    return *flag;
}

double readNumber(const JsonValue& value, const JsonPlace& place) {
    if (const auto* number = std::get_if<double>(&value.content))
        return *number;
    if (const auto* number = std::get_if<std::int64_t>(&value.content))
        return static_cast<double>(*number);
    if (const auto* number = std::get_if<std::uint64_t>(&value.content))
        return static_cast<double>(*number);
    throw mismatchAt(place, value, "a number");
}

std::int64_t readInteger(const JsonValue& value, const JsonPlace& place) {
    if (const auto* number = std::get_if<std::int64_t>(&value.content))
        return *number;
    if (const auto* number = std::get_if<std::uint64_t>(&value.content)) {
        if (std::in_range<std::int64_t>(*number))
            return static_cast<std::int64_t>(*number);
        throw errorAt(place, Kind::dataCorrupted, " is too large a number.");
    }
    // JSON has one kind of number: 2.0 is the integer 2.
    const double number = readNumber(value, place);
    if (std::trunc(number) != number)
        throw errorAt(place, Kind::dataCorrupted, " is not a whole number.");
    if (number < -0x1p63 || number >= 0x1p63)
        throw errorAt(place, Kind::dataCorrupted, " is too large a number.");
    return static_cast<std::int64_t>(number);
}

/// Makes a reader out of a function that turns a text into the thing, or nothing where the text is not one.
template <typename Parse>
auto textReadBy(Parse parse, std::string_view expected) {
    return [parse, expected](const JsonValue& value, const JsonPlace& place) {
        const std::string& text = readText(value, place);
        auto result = parse(text);
        if (!result)
            throw errorAt(place, Kind::dataCorrupted,
                          " is not " + std::string{expected} + ": " + excerpt(text) + ".");
        return *std::move(result);
    };
}

const auto readUuid = textReadBy(Foundation::Uuid::parse, "a UUID");
const auto readInstant = textReadBy(Foundation::parseIso8601, "a date");
const auto readBytes = textReadBy(Foundation::base64Decoded, "base64 text");
const auto readProvenance = textReadBy(provenanceFromRawValue, "a known provenance");
const auto readAIProvider = textReadBy(aiProviderFromRawValue, "a known caption provider");
const auto readChapterStyle = textReadBy(chapterStyleFromRawValue, "a known chapter style");

/// Reads an object whose only key names one of two cases.
template <typename FirstReader, typename SecondReader>
auto readCase(const JsonValue& value, const JsonPlace& place, std::string_view firstKey,
              FirstReader readFirst, std::string_view secondKey, SecondReader readSecond)
    -> std::variant<std::invoke_result_t<FirstReader, const JsonRecord&>,
                    std::invoke_result_t<SecondReader, const JsonRecord&>> {
    const JsonValue::Member* member = JsonRecord{value, place}.onlyMember();
    if (member && member->key == firstKey)
        return readFirst(JsonRecord{member->value, JsonPlace{place, firstKey}});
    if (member && member->key == secondKey)
        return readSecond(JsonRecord{member->value, JsonPlace{place, secondKey}});
    throw errorAt(place, Kind::typeMismatch, ": Invalid number of keys found, expected one.");
}

PhotoRef readPhotoRef(const JsonValue& value, const JsonPlace& place) {
    return readCase(
        value, place, "photoKit",
        [](const JsonRecord& payload) {
            return LibraryPhotoRef{.localIdentifier = payload.required("localIdentifier", readText)};
        },
        "file",
        [](const JsonRecord& payload) {
            return FilePhotoRef{.bookmark = payload.required("bookmark", readBytes),
                                .displayName = payload.required("displayName", readText)};
        });
}

PhotoSourceRef readPhotoSourceRef(const JsonValue& value, const JsonPlace& place) {
    return readCase(
        value, place, "photoKitAlbum",
        [](const JsonRecord& payload) {
            return AlbumSourceRef{.localIdentifier = payload.required("localIdentifier", readText),
                                  .title = payload.required("title", readText)};
        },
        "folder",
        [](const JsonRecord& payload) {
            return FolderSourceRef{.bookmark = payload.required("bookmark", readBytes),
                                   .displayPath = payload.required("displayPath", readText)};
        });
}

PhotoSource readPhotoSource(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {.id = record.required("id", readUuid), .ref = record.required("ref", readPhotoSourceRef)};
}

Coordinate readCoordinate(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {.latitude = record.required("latitude", readNumber),
            .longitude = record.required("longitude", readNumber)};
}

ResolvedLocation readLocation(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {.city = record.optional("city", readText),
            .country = record.optional("country", readText),
            .provenance = record.required("provenance", readProvenance)};
}

PhotoItem readPhoto(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {
        .id = record.required("id", readUuid),
        .source = record.required("source", readPhotoRef),
        .captureDate = record.optional("captureDate", readInstant),
        .coordinate = record.optional("coordinate", readCoordinate),
        .location = record.optional("location", readLocation),
        .clusterID = record.optional("clusterID", readUuid),
        .qualityScore = record.optional("qualityScore", readNumber),
        .caption = record.optional("caption", readText),
        .captionProvenance = record.optional("captionProvenance", readProvenance),
        .isSelected = record.required("isSelected", readBoolean),
        .selectionProvenance = record.required("selectionProvenance", readProvenance),
        .isMissing = record.required("isMissing", readBoolean),
        .sourceID = record.optional("sourceID", readUuid),
    };
}

ProjectSettings readSettings(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {
        .photoDuration = record.optional("photoDuration", readNumber),
        .kenBurnsEnabled = record.optional("kenBurnsEnabled", readBoolean),
        .captionsEnabled = record.optional("captionsEnabled", readBoolean),
        .aiCaptionsEnabled = record.optional("aiCaptionsEnabled", readBoolean),
        .chapterStyle = record.optional("chapterStyle", readChapterStyle),
        .aiProvider = record.optional("aiProvider", readAIProvider),
        .captionPrompt = record.optional("captionPrompt", readText),
    };
}

MusicSelection readMusic(const JsonValue& value, const JsonPlace& place) {
    const JsonRecord record{value, place};
    return {.bookmark = record.required("bookmark", readBytes),
            .displayName = record.required("displayName", readText)};
}

/// What both layouts have in common: everything but the version and the sources.
Project readProject(const JsonRecord& record, std::vector<PhotoSource> sources) {
    return {
        .sources = std::move(sources),
        .photos = record.required("photos", listOf(readPhoto)),
        .settings = record.required("settings", readSettings),
        .music = record.optional("music", readMusic),
        .usesManualOrder = record.required("usesManualOrder", readBoolean),
    };
}

/// Version 1 held bare references. Its photos do not tell which one they came from, so the new identifiers
/// are linked to none of them.
Project migratedFromVersion1(const JsonRecord& record, const Foundation::UuidSource& newID) {
    std::vector<PhotoSource> sources;
    for (PhotoSourceRef& ref : record.required("sources", listOf(readPhotoSourceRef)))
        sources.push_back({.id = newID(), .ref = std::move(ref)});
    return readProject(record, std::move(sources));
}

} // namespace

Project decodeProject(std::string_view bytes, const Foundation::UuidSource& newID) {
    const JsonValue document = parseJson(bytes);
    const JsonPlace root;
    if (!std::holds_alternative<JsonValue::Object>(document.content))
        throw ProjectFileError(Kind::dataCorrupted,
                               "The file is not a valid project: its JSON is not an object.");
    const JsonRecord record{document, root};
    const std::int64_t version = record.optional("schemaVersion", readInteger).value_or(1);
    if (version > Project::currentSchemaVersion)
        throw ProjectFileError(version, Project::currentSchemaVersion);
    if (version < Project::currentSchemaVersion)
        return migratedFromVersion1(record, newID);
    return readProject(record, record.required("sources", listOf(readPhotoSource)));
}

} // namespace ProjectModel
