// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ProjectFile.h>
#include <ProjectModel/RandomProject.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

namespace ProjectModel {
namespace {

using Foundation::Uuid;
using Kind = ProjectFileError::Kind;
using testing::HasSubstr;

/// The text with the first occurrence of a piece replaced.
std::string with(std::string text, std::string_view piece, std::string_view replacement) {
    const std::size_t position = text.find(piece);
    EXPECT_NE(position, std::string::npos) << "no " << piece << " in " << text;
    if (position != std::string::npos)
        text.replace(position, piece.size(), replacement);
    return text;
}

/// One photo, one source of each kind, everything set. Members in no particular order.
const std::string fullDocument = R"({
  "schemaVersion": 2,
  "sources": [
    {"id": "00000000-0000-4000-8000-0000000000A1", "ref": {"folder": {"bookmark": "L3A=", "displayPath": "/p"}}},
    {"id": "00000000-0000-4000-8000-0000000000A2",
     "ref": {"photoKitAlbum": {"localIdentifier": "album/1", "title": "Trip"}}}
  ],
  "photos": [
    {
      "id": "00000000-0000-4000-8000-0000000000b1",
      "source": {"file": {"bookmark": "/wEC", "displayName": "a.jpg"}},
      "captureDate": "2023-07-14T16:22:05Z",
      "coordinate": {"latitude": 38.7, "longitude": -9},
      "location": {"city": "Lisbon", "country": "Portugal", "provenance": "geocoded"},
      "clusterID": "00000000-0000-4000-8000-0000000000C1",
      "qualityScore": 0.75,
      "caption": "At the river",
      "captionProvenance": "user",
      "isSelected": true,
      "selectionProvenance": "proposed",
      "isMissing": false,
      "sourceID": "00000000-0000-4000-8000-0000000000A1"
    },
    {
      "id": "00000000-0000-4000-8000-0000000000B2",
      "source": {"photoKit": {"localIdentifier": "asset/1"}},
      "isSelected": false,
      "selectionProvenance": "user",
      "isMissing": true
    }
  ],
  "settings": {
    "photoDuration": 4, "kenBurnsEnabled": true, "captionsEnabled": false, "aiCaptionsEnabled": true,
    "chapterStyle": "overlay", "aiProvider": "openRouter", "captionPrompt": "Be brief"
  },
  "music": {"bookmark": "bS5tcDM=", "displayName": "m.mp3"},
  "usesManualOrder": true
})";

Project fullProject() {
    const Uuid folderID = *Uuid::parse("00000000-0000-4000-8000-0000000000A1");
    return {
        .schemaVersion = 2,
        .sources = {{.id = folderID, .ref = FolderSourceRef{.bookmark = {'/', 'p'}, .displayPath = "/p"}},
                    {.id = *Uuid::parse("00000000-0000-4000-8000-0000000000A2"),
                     .ref = AlbumSourceRef{.localIdentifier = "album/1", .title = "Trip"}}},
        .photos = {{
                       .id = *Uuid::parse("00000000-0000-4000-8000-0000000000B1"),
                       .source = FilePhotoRef{.bookmark = {0xFF, 1, 2}, .displayName = "a.jpg"},
                       .captureDate = Foundation::makeInstant(2023, 7, 14, 16, 22, 5),
                       .coordinate = Coordinate{.latitude = 38.7, .longitude = -9},
                       .location = ResolvedLocation{.city = "Lisbon",
                                                    .country = "Portugal",
                                                    .provenance = Provenance::geocoded},
                       .clusterID = *Uuid::parse("00000000-0000-4000-8000-0000000000C1"),
                       .qualityScore = 0.75,
                       .caption = "At the river",
                       .captionProvenance = Provenance::user,
                       .isSelected = true,
                       .selectionProvenance = Provenance::proposed,
                       .isMissing = false,
                       .sourceID = folderID,
                   },
                   {
                       .id = *Uuid::parse("00000000-0000-4000-8000-0000000000B2"),
                       .source = LibraryPhotoRef{.localIdentifier = "asset/1"},
                       .captureDate = std::nullopt,
                       .coordinate = std::nullopt,
                       .location = std::nullopt,
                       .clusterID = std::nullopt,
                       .qualityScore = std::nullopt,
                       .caption = std::nullopt,
                       .captionProvenance = std::nullopt,
                       .isSelected = false,
                       .selectionProvenance = Provenance::user,
                       .isMissing = true,
                       .sourceID = std::nullopt,
                   }},
        .settings = {.photoDuration = 4,
                     .kenBurnsEnabled = true,
                     .captionsEnabled = false,
                     .aiCaptionsEnabled = true,
                     .chapterStyle = ChapterStyle::overlay,
                     .aiProvider = AIProvider::openRouter,
                     .captionPrompt = "Be brief"},
        .music = MusicSelection{.bookmark = {'m', '.', 'm', 'p', '3'}, .displayName = "m.mp3"},
        .usesManualOrder = true,
    };
}

constexpr std::string_view version1Document = R"({
  "sources": [
    {"folder": {"bookmark": "L3A=", "displayPath": "/p"}},
    {"photoKitAlbum": {"localIdentifier": "album/1", "title": "Trip"}}
  ],
  "photos": [
    {"id": "00000000-0000-4000-8000-0000000000B2", "source": {"photoKit": {"localIdentifier": "asset/1"}},
     "isSelected": true, "selectionProvenance": "user", "isMissing": false}
  ],
  "settings": {"photoDuration": 3.5},
  "music": {"bookmark": "bQ==", "displayName": "m.mp3"},
  "usesManualOrder": true
})";

void expectFailure(std::string_view document, Kind kind, std::string_view message) {
    try {
        const Project project = decodeProject(document);
        ADD_FAILURE() << "was read: " << document.substr(0, 200);
    } catch (const ProjectFileError& error) {
        EXPECT_EQ(error.kind(), kind) << error.what();
        EXPECT_THAT(error.what(), HasSubstr(message));
        EXPECT_EQ(std::string_view{error.what()}.find('\n'), std::string_view::npos);
    }
}

// Writing

TEST(ProjectFileTest, EncodesTheEmptyProjectAsItsFiveKeysInOrder) {
    EXPECT_EQ(encoded(Project::empty()), R"({
  "photos": [],
  "schemaVersion": 2,
  "settings": {},
  "sources": [],
  "usesManualOrder": false
})");
}

TEST(ProjectFileTest, WritesEveryMemberSortedByKeyAndPrettyPrinted) {
    EXPECT_EQ(encoded(fullProject()), R"({
  "music": {
    "bookmark": "bS5tcDM=",
    "displayName": "m.mp3"
  },
  "photos": [
    {
      "caption": "At the river",
      "captionProvenance": "user",
      "captureDate": "2023-07-14T16:22:05Z",
      "clusterID": "00000000-0000-4000-8000-0000000000C1",
      "coordinate": {
        "latitude": 38.7,
        "longitude": -9
      },
      "id": "00000000-0000-4000-8000-0000000000B1",
      "isMissing": false,
      "isSelected": true,
      "location": {
        "city": "Lisbon",
        "country": "Portugal",
        "provenance": "geocoded"
      },
      "qualityScore": 0.75,
      "selectionProvenance": "proposed",
      "source": {
        "file": {
          "bookmark": "/wEC",
          "displayName": "a.jpg"
        }
      },
      "sourceID": "00000000-0000-4000-8000-0000000000A1"
    },
    {
      "id": "00000000-0000-4000-8000-0000000000B2",
      "isMissing": true,
      "isSelected": false,
      "selectionProvenance": "user",
      "source": {
        "photoKit": {
          "localIdentifier": "asset/1"
        }
      }
    }
  ],
  "schemaVersion": 2,
  "settings": {
    "aiCaptionsEnabled": true,
    "aiProvider": "openRouter",
    "captionPrompt": "Be brief",
    "captionsEnabled": false,
    "chapterStyle": "overlay",
    "kenBurnsEnabled": true,
    "photoDuration": 4
  },
  "sources": [
    {
      "id": "00000000-0000-4000-8000-0000000000A1",
      "ref": {
        "folder": {
          "bookmark": "L3A=",
          "displayPath": "/p"
        }
      }
    },
    {
      "id": "00000000-0000-4000-8000-0000000000A2",
      "ref": {
        "photoKitAlbum": {
          "localIdentifier": "album/1",
          "title": "Trip"
        }
      }
    }
  ],
  "usesManualOrder": true
})");
}

TEST(ProjectFileTest, WritesKeysInAscendingOrderAndNeverNullInAnyProject) {
    Testing::RandomProject random{31};
    for (int i = 0; i < 200; ++i) {
        // Between a key's line and the previous key's line of the same depth lie only deeper lines.
        std::vector<std::string> lastKeyAtDepth(16);
        std::string text = encoded(random.project());
        text += '\n';
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = text.find('\n', start);
            const std::string line = text.substr(start, end - start);
            start = end + 1;
            const std::size_t indent = line.find_first_not_of(' ');
            ASSERT_EQ(indent % 2, 0U);
            std::fill(lastKeyAtDepth.begin() + static_cast<std::ptrdiff_t>(indent / 2 + 1),
                      lastKeyAtDepth.end(), "");
            if (line[indent] != '"') {
                lastKeyAtDepth[indent / 2].clear();
                continue;
            }
            const std::size_t keyEnd = line.find("\": ", indent);
            ASSERT_NE(keyEnd, std::string::npos) << line;
            const std::string key = line.substr(indent, keyEnd - indent);
            ASSERT_LT(lastKeyAtDepth[indent / 2], key);
            lastKeyAtDepth[indent / 2] = key;
            ASSERT_NE(line.substr(keyEnd + 3, 4), "null");
        }
    }
}

TEST(ProjectFileTest, WritesTheCurrentVersionWhateverTheValueHolds) {
    Project project;
    project.schemaVersion = 1;
    EXPECT_EQ(decodeProject(encoded(project)).schemaVersion, 2);
}

TEST(ProjectFileTest, RefusesToWriteWhatItsFormatCannotHold) {
    const auto expectRefusal = [](const Project& project, std::string_view message) {
        try {
            const std::string bytes = encoded(project);
            ADD_FAILURE() << "was written: " << bytes;
        } catch (const ProjectFileError& error) {
            EXPECT_EQ(error.kind(), Kind::notEncodable);
            EXPECT_THAT(error.what(), HasSubstr(message));
        }
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const double number : {infinity, -infinity, notANumber}) {
        Project project = fullProject();
        project.settings.photoDuration = number;
        expectRefusal(project, "settings.photoDuration cannot be saved");
        project = fullProject();
        project.photos[1].qualityScore = number;
        expectRefusal(project, "photos[1].qualityScore cannot be saved");
        project = fullProject();
        project.photos[0].coordinate->longitude = number;
        expectRefusal(project, "photos[0].coordinate.longitude cannot be saved");
    }
    Project project = fullProject();
    project.photos[1].caption = "\xC3";
    expectRefusal(project, "photos[1].caption cannot be saved");
    project = fullProject();
    std::get<FilePhotoRef>(project.photos[0].source).displayName = "\xFFname.jpg";
    expectRefusal(project, "photos[0].source.file.displayName cannot be saved");
    project = fullProject();
    project.photos[0].captureDate =
        *Foundation::makeInstant(9999, 12, 31, 23, 59, 59) + std::chrono::seconds{1};
    expectRefusal(project, "photos[0].captureDate cannot be saved");
    project.photos[0].captureDate = *Foundation::makeInstant(1, 1, 1, 0, 0, 0) - std::chrono::seconds{1};
    expectRefusal(project, "photos[0].captureDate cannot be saved");
    project.photos[0].captureDate = Foundation::Instant::max();
    expectRefusal(project, "photos[0].captureDate cannot be saved");
}

// Reading what is right

TEST(ProjectFileTest, ReadsBackEveryProjectItWritesAndWritesTheSameBytesAgain) {
    Testing::RandomProject random{1};
    for (int i = 0; i < 1000; ++i) {
        const Project project = random.project();
        const std::string bytes = encoded(project);
        const Project decoded = decodeProject(bytes);
        ASSERT_EQ(decoded, project) << bytes;
        ASSERT_EQ(encoded(decoded), bytes);
    }
}

TEST(ProjectFileTest, ReadsEveryMemberInWhateverOrderTheyStand) {
    EXPECT_EQ(decodeProject(fullDocument), fullProject());
}

TEST(ProjectFileTest, ReadsAPhotoWithEveryOptionalMemberAbsent) {
    Project project;
    project.photos = {fullProject().photos[1]};
    EXPECT_EQ(decodeProject(encoded(project)), project);
}

TEST(ProjectFileTest, ReadsNullForAnOptionalMemberAsAbsent) {
    std::string document{fullDocument};
    for (const char* key : {"captureDate", "coordinate", "location", "clusterID", "qualityScore", "caption",
                            "captionProvenance", "sourceID"})
        document =
            with(document, "\"isMissing\": true", "\"" + std::string{key} + "\": null,\"isMissing\": true");
    EXPECT_EQ(decodeProject(document), fullProject());

    document = R"({"schemaVersion": 2, "sources": [], "photos": [], "music": null, "usesManualOrder": false,
        "settings": {"photoDuration": null, "kenBurnsEnabled": null, "captionsEnabled": null,
                     "aiCaptionsEnabled": null, "chapterStyle": null, "aiProvider": null, "captionPrompt": null}})";
    EXPECT_EQ(decodeProject(document), Project::empty());

    const Project located = decodeProject(with(fullDocument, "\"city\": \"Lisbon\"", "\"city\": null"));
    EXPECT_EQ(located.photos[0].location->city, std::nullopt);
}

TEST(ProjectFileTest, ReadsACaptionProvenanceWithoutACaption) {
    const Project project = decodeProject(with(fullDocument, "\"caption\": \"At the river\",", ""));
    EXPECT_EQ(project.photos[0].caption, std::nullopt);
    EXPECT_EQ(project.photos[0].captionProvenance, Provenance::user);
}

TEST(ProjectFileTest, IgnoresMembersItDoesNotKnow) {
    std::string document = with(fullDocument, "\"isMissing\": false",
                                R"("isMissing": false, "future": {"a": [1, {"b": null}], "a": 2})");
    document = with(document, "\"latitude\"", R"("altitude": 12, "latitude")");
    document = with(document, "\"photoDuration\"", R"("theme": "dark", "photoDuration")");
    document = with(document, "\"schemaVersion\"", R"("createdBy": "somebody", "schemaVersion")");
    document = with(document, "\"displayName\"", R"("size": 7, "displayName")");
    EXPECT_EQ(decodeProject(document), fullProject());
}

TEST(ProjectFileTest, ReadsIdentifiersInEitherCase) {
    const std::string id = "ABCDEF01-2345-4789-8ABC-DEFABCDEFABC";
    std::string lower = id;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    const std::string_view present = "00000000-0000-4000-8000-0000000000B2";
    EXPECT_EQ(decodeProject(with(fullDocument, present, lower)),
              decodeProject(with(fullDocument, present, id)));
}

TEST(ProjectFileTest, ReadsAVersionWrittenWithAFractionOfZero) {
    for (const char* version : {"2.0", "2e0", "20e-1", "0.2E+1"})
        EXPECT_EQ(decodeProject(with(fullDocument, "\"schemaVersion\": 2",
                                     "\"schemaVersion\": " + std::string{version})),
                  fullProject())
            << version;
}

TEST(ProjectFileTest, IgnoresAByteOrderMark) {
    EXPECT_EQ(decodeProject("\xEF\xBB\xBF" + fullDocument), fullProject());
}

TEST(ProjectFileTest, KeepsTheSignOfZeroAndTheLastBitOfNumbers) {
    for (const double number :
         {-0.0, 0.1, 5e-324, 2.2250738585072014e-308, 1.7976931348623157e308, 1e21, 123456789012345680.0}) {
        Project project;
        project.settings.photoDuration = number;
        const double read = *decodeProject(encoded(project)).settings.photoDuration;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(number)) << number;
    }
}

TEST(ProjectFileTest, KeepsNulAndEveryOtherCharacterInTexts) {
    Project project;
    project.settings.captionPrompt = std::string{"a\0b\x01\x7F\"\\/\u2028😀", 15};
    EXPECT_EQ(decodeProject(encoded(project)), project);
}

TEST(ProjectFileTest, ReadsEscapedCharactersBeyondTheBasicPlane) {
    const Project project = decodeProject(with(fullDocument, "At the river", R"(\ud83d\ude00\u00e9\/)"));
    EXPECT_EQ(project.photos[0].caption, "😀é/");
}

// Version 1

TEST(ProjectFileTest, GivesTheSourcesOfVersion1NewIdentifiersInTheirOrder) {
    const Project first = decodeProject(version1Document);
    ASSERT_EQ(first.sources.size(), 2U);
    EXPECT_EQ(first.sources[0].ref,
              (PhotoSourceRef{FolderSourceRef{.bookmark = {'/', 'p'}, .displayPath = "/p"}}));
    EXPECT_EQ(first.sources[1].ref,
              (PhotoSourceRef{AlbumSourceRef{.localIdentifier = "album/1", .title = "Trip"}}));
    EXPECT_NE(first.sources[0].id, first.sources[1].id);

    const Project second = decodeProject(version1Document);
    for (const PhotoSource& a : first.sources) {
        for (const PhotoSource& b : second.sources)
            EXPECT_NE(a.id, b.id);
    }
}

TEST(ProjectFileTest, MigratesEverythingElseOfVersion1AsItIs) {
    std::uint8_t next = 0;
    const Project project = decodeProject(version1Document, [&] { return Uuid{{++next}}; });
    EXPECT_EQ(project.schemaVersion, 2);
    EXPECT_EQ(project.sources[0].id, Uuid{{1}});
    EXPECT_EQ(project.sources[1].id, Uuid{{2}});
    ASSERT_EQ(project.photos.size(), 1U);
    EXPECT_EQ(project.photos[0].sourceID, std::nullopt);
    EXPECT_TRUE(project.photos[0].isSelected);
    EXPECT_EQ(project.photos[0].selectionProvenance, Provenance::user);
    EXPECT_EQ(project.settings.photoDuration, 3.5);
    EXPECT_EQ(project.music->displayName, "m.mp3");
    EXPECT_TRUE(project.usesManualOrder);
}

TEST(ProjectFileTest, MigratesAnyVersionBelow2) {
    const auto newID = [] { return Uuid{}; };
    const Project expected = decodeProject(version1Document, newID);
    for (const char* version : {"1", "0", "-1", "-9223372036854775808", "1.0", "-0", "null"})
        EXPECT_EQ(decodeProject(with(std::string{version1Document}, "{",
                                     "{\"schemaVersion\": " + std::string{version} + ","),
                                newID),
                  expected)
            << version;
}

TEST(ProjectFileTest, ReadsAFileWithoutAVersionAsVersion1SoThatTheCurrentLayoutFails) {
    expectFailure(with(fullDocument, "\"schemaVersion\": 2,", ""), Kind::typeMismatch,
                  "sources[0]: Invalid number of keys found, expected one.");
}

TEST(ProjectFileTest, DoesNotTakeVersion1SourcesForTheCurrentOnes) {
    expectFailure(with(std::string{version1Document}, "{", "{\"schemaVersion\": 2,"), Kind::keyNotFound,
                  "sources[0].id is missing.");
}

TEST(ProjectFileTest, WritesAMigratedProjectInTheCurrentLayout) {
    const Project migrated = decodeProject(version1Document);
    EXPECT_EQ(decodeProject(encoded(migrated)), migrated);
}

// Reading what is wrong

TEST(ProjectFileTest, RefusesNewerVersionsWithoutLookingFurther) {
    const std::pair<const char*, std::int64_t> versions[] = {
        {"3", 3}, {"3.0", 3}, {"9223372036854775807", std::numeric_limits<std::int64_t>::max()}};
    for (const auto& [text, version] : versions) {
        try {
            const Project project =
                decodeProject(R"({"photos": "moved", "schemaVersion": )" + std::string{text} + "}");
            ADD_FAILURE() << "was read";
        } catch (const ProjectFileError& error) {
            EXPECT_EQ(error, ProjectFileError(version, 2));
            EXPECT_EQ(error.kind(), Kind::newerSchema);
            EXPECT_EQ(error.foundVersion(), version);
            EXPECT_EQ(error.newestSupported(), 2);
            EXPECT_THAT(error.what(), HasSubstr("newer version of Roamly"));
        }
    }
}

TEST(ProjectFileTest, ErrorsAreEqualByKindAndVersions) {
    EXPECT_NE(ProjectFileError(3, 2), ProjectFileError(4, 2));
    EXPECT_NE(ProjectFileError(3, 2), ProjectFileError(3, 1));
    EXPECT_EQ(ProjectFileError(Kind::keyNotFound, "a"), ProjectFileError(Kind::keyNotFound, "b"));
    EXPECT_NE(ProjectFileError(Kind::keyNotFound, "a"), ProjectFileError(Kind::typeMismatch, "a"));
}

TEST(ProjectFileTest, RefusesWhatIsNotJson) {
    for (const std::string_view text : {"not json",
                                        "{",
                                        "{]",
                                        "{\"a\":1,}",
                                        "{'a':1}",
                                        "{\"a\":01}",
                                        "{\"a\":+1}",
                                        "{\"a\":.5}",
                                        "{\"a\":1.}",
                                        "{\"a\":NaN}",
                                        "{\"a\":Infinity}",
                                        "{} {}",
                                        "{}x",
                                        "// c\n{}",
                                        "{\"a\":\"\t\"}",
                                        "{\"a\":\"\\x\"}",
                                        "{\"a\":\"\\ud800\"}",
                                        "{\"a\":tru}",
                                        " ",
                                        "\xEF\xBB",
                                        "\xEF\xBB\xBF"})
        expectFailure(text, Kind::dataCorrupted, "not valid JSON");
    expectFailure("", Kind::dataCorrupted, "The file is empty");
}

TEST(ProjectFileTest, RefusesAFileWhoseEndWasNeverWritten) {
    const std::string bytes = encoded(fullProject());
    for (std::size_t length = 1; length < bytes.size(); ++length)
        expectFailure(bytes.substr(0, length), Kind::dataCorrupted, "not valid JSON");
    expectFailure(bytes + std::string(1, '\0'), Kind::dataCorrupted, "not valid JSON");
    expectFailure(bytes.substr(0, 100) + std::string(bytes.size() - 100, '\0'), Kind::dataCorrupted,
                  "not valid JSON");
}

TEST(ProjectFileTest, TellsTheLineAndColumnOfASyntaxError) {
    expectFailure("{\n  \"photos\": [],\n  \"sources\" []\n}", Kind::dataCorrupted, "(line 3, column 13)");
    expectFailure("x", Kind::dataCorrupted, "(line 1, column 1)");
}

TEST(ProjectFileTest, RefusesADocumentThatIsNotAnObject) {
    for (const char* text : {"[]", "null", "1", "\"text\"", "true", "[{}]"})
        expectFailure(text, Kind::dataCorrupted, "its JSON is not an object");
}

TEST(ProjectFileTest, RefusesInvalidUtf8AnywhereInTheFile) {
    for (const std::string_view text :
         {"\xC3", "\x80", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"}) {
        expectFailure(with(fullDocument, "At the river", text), Kind::dataCorrupted, "not valid JSON");
        expectFailure("{\"unknown\": \"" + std::string{text} + "\"," + fullDocument.substr(1),
                      Kind::dataCorrupted, "not valid JSON");
    }
}

TEST(ProjectFileTest, RefusesNumbersBeyondADouble) {
    for (const char* number : {"1e309", "-1e309", "1e99999999999"}) {
        expectFailure(with(fullDocument, "0.75", number), Kind::dataCorrupted, "a number that is too large");
        expectFailure(with(fullDocument, "38.7", number), Kind::dataCorrupted, "a number that is too large");
        expectFailure(with(fullDocument, "{", "{\"unknown\": " + std::string{number} + ","),
                      Kind::dataCorrupted, "a number that is too large");
    }
    expectFailure(with(fullDocument, "0.75", std::string(400, '9')), Kind::dataCorrupted, "too large");
}

TEST(ProjectFileTest, TakesNumbersTooSmallForADoubleForZeroAndLongIntegersForTheNearestNumber) {
    EXPECT_EQ(decodeProject(with(fullDocument, "0.75", "1e-400")).photos[0].qualityScore, 0.0);
    EXPECT_EQ(decodeProject(with(fullDocument, "0.75", "18446744073709551615")).photos[0].qualityScore,
              0x1p64);
    EXPECT_EQ(decodeProject(with(fullDocument, "0.75", "100000000000000000000")).photos[0].qualityScore,
              1e20);
}

TEST(ProjectFileTest, RefusesAVersionThatIsNotANumber) {
    for (const char* version : {"\"2\"", "true", "[2]", "{}", "false"})
        expectFailure(
            with(fullDocument, "\"schemaVersion\": 2", "\"schemaVersion\": " + std::string{version}),
            Kind::typeMismatch, "schemaVersion is ");
}

TEST(ProjectFileTest, RefusesAVersionThatIsNotA64BitInteger) {
    for (const char* version : {"2.5", "1e-3", "-0.5"})
        expectFailure(
            with(fullDocument, "\"schemaVersion\": 2", "\"schemaVersion\": " + std::string{version}),
            Kind::dataCorrupted, "schemaVersion is not a whole number.");
    for (const char* version : {"9223372036854775808", "18446744073709551615", "18446744073709551616", "1e19",
                                "-9223372036854775809e3", "-1e300"})
        expectFailure(
            with(fullDocument, "\"schemaVersion\": 2", "\"schemaVersion\": " + std::string{version}),
            Kind::dataCorrupted, "schemaVersion is too large a number.");
}

TEST(ProjectFileTest, RefusesAFileThatLacksARequiredMember) {
    struct Case {
        std::string_view piece;
        std::string_view replacement;
        std::string_view missing;
    };
    for (const auto& [piece, replacement, missing] : {
             Case{"\"usesManualOrder\"", "\"x\"", "usesManualOrder"},
             Case{"\"photos\"", "\"x\"", "photos"},
             Case{"\"sources\"", "\"x\"", "sources"},
             Case{"\"settings\"", "\"x\"", "settings"},
             Case{"\"isSelected\"", "\"x\"", "photos[0].isSelected"},
             Case{"\"selectionProvenance\"", "\"x\"", "photos[0].selectionProvenance"},
             Case{"\"isMissing\": true", "\"x\": true", "photos[1].isMissing"},
             Case{"\"id\": \"00000000-0000-4000-8000-0000000000B2\"", "\"x\": 0", "photos[1].id"},
             Case{"\"id\": \"00000000-0000-4000-8000-0000000000A2\"", "\"x\": 0", "sources[1].id"},
             Case{"\"ref\"", "\"x\"", "sources[0].ref"},
             Case{"\"source\"", "\"x\"", "photos[0].source"},
             Case{"\"provenance\"", "\"x\"", "photos[0].location.provenance"},
             Case{"\"latitude\"", "\"x\"", "photos[0].coordinate.latitude"},
             Case{"\"longitude\"", "\"x\"", "photos[0].coordinate.longitude"},
             Case{"\"displayPath\"", "\"x\"", "sources[0].ref.folder.displayPath"},
             Case{"\"title\"", "\"x\"", "sources[1].ref.photoKitAlbum.title"},
             Case{"\"localIdentifier\": \"album", "\"x\": \"album",
                  "sources[1].ref.photoKitAlbum.localIdentifier"},
             Case{"\"localIdentifier\": \"asset", "\"x\": \"asset",
                  "photos[1].source.photoKit.localIdentifier"},
             Case{"\"bookmark\": \"L3A=\"", "\"x\": 0", "sources[0].ref.folder.bookmark"},
             Case{"\"displayName\": \"a.jpg\"", "\"x\": 0", "photos[0].source.file.displayName"},
             Case{"\"bookmark\": \"bS5tcDM=\"", "\"x\": 0", "music.bookmark"},
             Case{"\"displayName\": \"m.mp3\"", "\"x\": 0", "music.displayName"},
         })
        expectFailure(with(fullDocument, piece, replacement), Kind::keyNotFound,
                      std::string{missing} + " is missing.");
}

TEST(ProjectFileTest, RefusesNullForARequiredMember) {
    expectFailure(with(fullDocument, "\"usesManualOrder\": true", "\"usesManualOrder\": null"),
                  Kind::typeMismatch, "usesManualOrder is null, but must be true or false.");
    expectFailure(with(fullDocument, "\"latitude\": 38.7", "\"latitude\": null"), Kind::typeMismatch,
                  "photos[0].coordinate.latitude is null, but must be a number.");
    expectFailure(
        R"({"schemaVersion": 2, "photos": [null], "settings": {}, "sources": [], "usesManualOrder": true})",
        Kind::typeMismatch, "photos[0] is null, but must be an object.");
}

TEST(ProjectFileTest, RefusesAValueOfAnotherType) {
    struct Case {
        std::string_view piece;
        std::string_view replacement;
        std::string_view message;
    };
    for (const auto& [piece, replacement, message] : {
             Case{"\"isSelected\": true", "\"isSelected\": 1",
                  "photos[0].isSelected is a number, but must be true or false."},
             Case{"\"isSelected\": true", "\"isSelected\": \"true\"",
                  "photos[0].isSelected is a text, but must be true or false."},
             Case{"0.75", "true", "photos[0].qualityScore is a boolean, but must be a number."},
             Case{"0.75", "\"0.75\"", "photos[0].qualityScore is a text, but must be a number."},
             Case{"\"At the river\"", "7", "photos[0].caption is a number, but must be a text."},
             Case{"\"2023-07-14T16:22:05Z\"", "1689351725",
                  "photos[0].captureDate is a number, but must be a text."},
             Case{"\"Lisbon\"", "[]", "photos[0].location.city is a list, but must be a text."},
             Case{"{\"latitude\": 38.7, \"longitude\": -9}", "[38.7, -9]",
                  "photos[0].coordinate is a list, but must be an object."},
             Case{"\"user\"", "4", "photos[0].captionProvenance is a number, but must be a text."},
             Case{"\"overlay\"", "1", "settings.chapterStyle is a number, but must be a text."},
             Case{"\"/wEC\"", "[255, 1, 2]", "photos[0].source.file.bookmark is a list, but must be a text."},
             Case{"{\"photoKit\": {\"localIdentifier\": \"asset/1\"}}", "\"asset/1\"",
                  "photos[1].source is a text, but must be an object."},
             Case{"{\"localIdentifier\": \"asset/1\"}", "null",
                  "photos[1].source.photoKit is null, but must be an object."},
             Case{"{\"bookmark\": \"bS5tcDM=\", \"displayName\": \"m.mp3\"}", "\"m.mp3\"",
                  "music is a text, but must be an object."},
         })
        expectFailure(with(fullDocument, piece, replacement), Kind::typeMismatch, message);
    for (const std::string key : {"photos", "sources"}) {
        const std::string empty = "\"" + key + "\": []";
        expectFailure(with(encoded(Project::empty()), empty, "\"" + key + "\": {}"), Kind::typeMismatch,
                      key + " is an object, but must be a list.");
    }
}

TEST(ProjectFileTest, RefusesAReferenceWithoutExactlyOneCase) {
    const std::string photo = R"({"photoKit": {"localIdentifier": "asset/1"}})";
    for (const char* replacement :
         {"{}", R"({"unknown": {}})", R"({"PhotoKit": {"localIdentifier": "a"}})",
          R"({"photoKit": {"localIdentifier": "a"}, "file": {"bookmark": "", "displayName": "a"}})",
          R"({"photoKit": {"localIdentifier": "a"}, "other": 1})", R"({"localIdentifier": "a"})"})
        expectFailure(with(fullDocument, photo, replacement), Kind::typeMismatch,
                      "photos[1].source: Invalid number of keys found, expected one.");
    const std::string source = R"({"folder": {"bookmark": "L3A=", "displayPath": "/p"}})";
    for (const char* replacement : {"{}", R"({"file": {"bookmark": "", "displayName": "a"}})",
                                    R"({"folder": {"bookmark": "", "displayPath": "a"},
              "photoKitAlbum": {"localIdentifier": "a", "title": "b"}})"})
        expectFailure(with(fullDocument, source, replacement), Kind::typeMismatch,
                      "sources[0].ref: Invalid number of keys found, expected one.");
}

TEST(ProjectFileTest, RefusesUnknownEnumerationValues) {
    expectFailure(with(fullDocument, "\"proposed\"", "\"guessed\""), Kind::dataCorrupted,
                  "photos[0].selectionProvenance is not a known provenance: \"guessed\".");
    expectFailure(with(fullDocument, "\"geocoded\"", "\"\""), Kind::dataCorrupted,
                  "photos[0].location.provenance is not a known provenance: \"\".");
    expectFailure(with(fullDocument, "\"user\"", "\"User\""), Kind::dataCorrupted,
                  "photos[0].captionProvenance is not a known provenance: \"User\".");
    expectFailure(with(fullDocument, "\"openRouter\"", "\"closedRouter\""), Kind::dataCorrupted,
                  "settings.aiProvider is not a known caption provider: \"closedRouter\".");
    expectFailure(with(fullDocument, "\"overlay\"", "\"slide\""), Kind::dataCorrupted,
                  "settings.chapterStyle is not a known chapter style: \"slide\".");
}

TEST(ProjectFileTest, RefusesDatesThatAreNotInTheInternetForm) {
    for (const std::string date :
         {"", "yesterday", "2023-07-14", "2023-07-14T16:22:05", "2023-07-14 16:22:05Z",
          "2023-07-14T16:22:05+00:00", "2023-07-14T16:22:05.5Z", "2023-7-14T16:22:05Z",
          "2023-02-29T00:00:00Z", "2023-13-01T00:00:00Z", "2023-07-14T24:00:00Z", "2023-07-14t16:22:05z",
          "12023-07-14T16:22:05Z", " 2023-07-14T16:22:05Z"})
        expectFailure(with(fullDocument, "2023-07-14T16:22:05Z", date), Kind::dataCorrupted,
                      "photos[0].captureDate is not a date: \"" + date + "\".");
}

TEST(ProjectFileTest, RefusesIdentifiersAndBytesThatAreNoSuchText) {
    expectFailure(
        with(fullDocument, "00000000-0000-4000-8000-0000000000b1", "0000000000004000-8000-0000000000b1"),
        Kind::dataCorrupted, "photos[0].id is not a UUID: ");
    expectFailure(with(fullDocument, "\"00000000-0000-4000-8000-0000000000C1\"", "\"\""), Kind::dataCorrupted,
                  "photos[0].clusterID is not a UUID: \"\".");
    for (const std::string_view text : {"/wE", "/wEC\\n", "_wEC", "/wEC====", "/=EC", "=", "/w EC"})
        expectFailure(with(fullDocument, "/wEC", text), Kind::dataCorrupted,
                      "photos[0].source.file.bookmark is not base64 text: ");
}

TEST(ProjectFileTest, RefusesAMemberThatStandsTwice) {
    expectFailure(with(fullDocument, "\"isMissing\": true", "\"isMissing\": true, \"isMissing\": true"),
                  Kind::dataCorrupted, "photos[1] holds \"isMissing\" twice.");
    expectFailure(with(fullDocument, "{", "{\"photos\": [],"), Kind::dataCorrupted,
                  "The document holds \"photos\" twice.");
    expectFailure(R"({"schemaVersion": 3, "schemaVersion": 2})", Kind::dataCorrupted,
                  "The document holds \"schemaVersion\" twice.");
}

TEST(ProjectFileTest, ShowsOnlyTheBeginningOfALongWrongText) {
    std::string longText;
    for (int i = 0; i < 1000; ++i)
        longText += "é";
    for (const std::string& prefix : {std::string{}, std::string{"a"}}) {
        try {
            const Project project =
                decodeProject(with(fullDocument, "2023-07-14T16:22:05Z", prefix + longText));
            ADD_FAILURE() << "was read";
        } catch (const ProjectFileError& error) {
            EXPECT_LT(std::string_view{error.what()}.size(), 120U);
            EXPECT_TRUE(Foundation::isValidUtf8(error.what()));
        }
    }
}

TEST(ProjectFileTest, RefusesDeepNestingWithoutExhaustingTheStack) {
    for (const std::size_t depth : {513U, 3'000'000U}) {
        expectFailure(std::string(depth, '['), Kind::dataCorrupted, "nested too deeply");
        std::string objects;
        for (std::size_t i = 0; i < std::min<std::size_t>(depth, 100'000); ++i)
            objects += "{\"a\":";
        expectFailure(objects, Kind::dataCorrupted, "nested too deeply");
        expectFailure("{\"unknown\":" + std::string(depth, '[') + std::string(depth, ']') + "}",
                      Kind::dataCorrupted, "nested too deeply");
    }
    const std::string nested = "{\"unknown\":" + std::string(511, '[') + std::string(511, ']') + ",";
    EXPECT_EQ(decodeProject(nested + fullDocument.substr(1)), fullProject());
}

} // namespace
} // namespace ProjectModel
