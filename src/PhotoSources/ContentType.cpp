// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <PhotoSources/ContentType.h>

#include <gio/gio.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace PhotoSources {

namespace {

using TypeName = std::unique_ptr<gchar, decltype(&g_free)>;

bool isImageType(const TypeName& type) {
    return g_content_type_is_a(type.get(), "image/*") != FALSE;
}

TypeName typeOfContents(std::span<const std::uint8_t> bytes) {
    return {g_content_type_guess(nullptr, bytes.data(), bytes.size(), nullptr), &g_free};
}

TypeName typeOfName(const std::filesystem::path& path) {
    return {g_content_type_guess(Foundation::displayText(path.filename()).c_str(), nullptr, 0, nullptr),
            &g_free};
}

/// Targa has no signature: two plain bytes are all that its entry in the database goes by.
bool isRecognisedByChance(const TypeName& type) {
    return g_content_type_equals(type.get(), "image/x-tga") != FALSE;
}

} // namespace

bool isImage(const FileSource& file) {
    const std::span<const std::uint8_t> head = file.head();
    if (head.empty())
        return false;
    // By far the most frequent answer, without the database's lock.
    if (head.size() >= 3 && head[0] == 0xFF && head[1] == 0xD8 && head[2] == 0xFF)
        return true;
    const TypeName contents = typeOfContents(head);
    if (g_content_type_is_unknown(contents.get()) != FALSE || isRecognisedByChance(contents))
        return isImageType(typeOfName(file.path()));
    return isImageType(contents);
}

} // namespace PhotoSources
