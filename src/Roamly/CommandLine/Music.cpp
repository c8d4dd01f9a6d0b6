#include <Foundation/Bookmark.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Music.h>
#include <Roamly/DisplayText.h>

namespace CommandLine {

ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Failure("There is no music file “" + Roamly::displayText(file) + "”.");
    const std::optional<Foundation::Bytes> bookmark =
        std::filesystem::is_regular_file(file, error) ? Foundation::makeBookmark(file) : std::nullopt;
    if (!bookmark)
        throw Failure("“" + Roamly::displayText(file) + "” is not a file that music can be read from.");
    return {*bookmark, Roamly::displayText(file.filename())};
}

} // namespace CommandLine
