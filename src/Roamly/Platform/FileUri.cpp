// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/FileUri.h>

#include <charconv>

namespace Platform {

namespace {

constexpr std::string_view localScheme = "file://";

bool mayStand(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           (byte != '\0' &&
            std::string_view{"/-._~!$&'()*+,;=:@"}.find(static_cast<char>(byte)) != std::string_view::npos);
}

} // namespace

std::string fileUri(const std::filesystem::path& path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri{localScheme};
    for (const char character : path.native()) {
        const auto byte = static_cast<unsigned char>(character);
        if (mayStand(byte))
            uri += character;
        else
            uri.append(1, '%').append(1, digits[byte >> 4]).append(1, digits[byte & 0xF]);
    }
    return uri;
}

std::optional<std::filesystem::path> pathOfFileUri(std::string_view uri) {
    if (!uri.starts_with(localScheme))
        return std::nullopt;
    uri.remove_prefix(localScheme.size());
    if (uri.starts_with("localhost/"))
        uri.remove_prefix(std::string_view{"localhost"}.size());
    if (!uri.starts_with('/'))
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] != '%') {
            path += uri[i];
            continue;
        }
        unsigned byte = 0;
        const std::string_view hex = uri.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(hex.data(), hex.data() + hex.size(), byte, 16);
        if (hex.size() != 2 || error != std::errc{} || end != hex.data() + 2 || byte == 0)
            return std::nullopt;
        path += static_cast<char>(byte);
        i += 2;
    }
    return path;
}

} // namespace Platform
