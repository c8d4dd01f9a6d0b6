// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bytes.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Values.h>
#include <Roamly/Document/SettingValue.h>

#include <charconv>
#include <optional>

namespace CommandLine::Values {

namespace {

constexpr int largestFrameSide = 16384;

template <typename Integer>
std::optional<Integer> integer(std::string_view typed) {
    Integer value = 0;
    const char* const end = typed.data() + typed.size();
    const auto result = std::from_chars(typed.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end)
        return std::nullopt;
    return value;
}

[[noreturn]] void fail(std::string_view typed, std::string_view wanted) {
    throw UsageError("“" + std::string{typed} + "” is not " + std::string{wanted} + ".");
}

} // namespace

std::string text(std::string_view typed, std::string_view what) {
    if (!Foundation::isValidUtf8(typed))
        throw UsageError(std::string{what} + " is not valid UTF-8 text.");
    return std::string{typed};
}

double number(std::string_view typed, std::string_view what) {
    const std::optional<double> value = Document::SettingValue::number(typed);
    if (!value)
        fail(typed, "a number, which " + std::string{what} + " needs");
    return *value;
}

std::size_t position(std::string_view typed, std::string_view what) {
    const std::optional<std::size_t> value = integer<std::size_t>(typed);
    if (!value)
        fail(typed, "a position in the list (0, 1, 2 …), which " + std::string{what} + " needs");
    return *value;
}

Foundation::Uuid uuid(std::string_view typed) {
    const std::optional<Foundation::Uuid> id = Foundation::Uuid::parse(typed);
    if (!id)
        fail(typed, "an identifier such as 6F9619FF-8B86-D011-B42D-00C04FC964FF");
    return *id;
}

std::set<Foundation::Uuid> uuids(std::span<const std::string> typed) {
    std::set<Foundation::Uuid> ids;
    for (const std::string& word : typed)
        ids.insert(uuid(word));
    return ids;
}

Frames::FrameSize frameSize(std::string_view typed) {
    const std::size_t cross = typed.find('x');
    if (cross != std::string_view::npos) {
        const std::optional<int> width = integer<int>(typed.substr(0, cross));
        const std::optional<int> height = integer<int>(typed.substr(cross + 1));
        if (width && height && *width > 0 && *height > 0 && *width <= largestFrameSide &&
            *height <= largestFrameSide)
            return {*width, *height};
    }
    fail(typed, "a size in pixels such as 1920x1080 (each side from 1 to 16384)");
}

Export::ExportResolution resolution(std::string_view typed) {
    const std::optional<Export::ExportResolution> value = Export::exportResolutionFromRawValue(typed);
    if (!value)
        fail(typed, "a resolution; it is p1080 or p2160");
    return *value;
}

Export::ExportCodec codec(std::string_view typed) {
    const std::optional<Export::ExportCodec> value = Export::exportCodecFromRawValue(typed);
    if (!value)
        fail(typed, "a codec; it is h264 or hevc");
    return *value;
}

} // namespace CommandLine::Values
