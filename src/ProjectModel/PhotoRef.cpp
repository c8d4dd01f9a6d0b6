#include <ProjectModel/PhotoRef.h>

#include <filesystem>
#include <optional>
#include <string_view>

namespace ProjectModel {

namespace {

std::string fileIdentity(const FilePhotoRef& file, Foundation::BookmarkResolver& resolver) {
    if (const std::optional<std::filesystem::path> path = resolver.resolve(file.bookmark))
        return path->string();
    // Taken as it stands, not normalised: the file may be gone, and the text alone is what identifies it.
    const std::string_view text{reinterpret_cast<const char*>(file.bookmark.data()), file.bookmark.size()};
    if (Foundation::isValidUtf8(text))
        return std::string{text};
    return file.displayName;
}

} // namespace

std::string identityKey(const PhotoRef& ref, Foundation::BookmarkResolver& resolver) {
    if (const auto* photo = std::get_if<LibraryPhotoRef>(&ref))
        return "photoKit:" + photo->localIdentifier;
    return "file:" + fileIdentity(std::get<FilePhotoRef>(ref), resolver);
}

} // namespace ProjectModel
