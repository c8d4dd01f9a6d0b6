// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/ChapterStyle.h>

namespace ProjectModel {

std::string_view rawValue(ChapterStyle style) {
    switch (style) {
    case ChapterStyle::card:
        return "card";
    case ChapterStyle::overlay:
        return "overlay";
    }
    return {};
}

std::optional<ChapterStyle> chapterStyleFromRawValue(std::string_view text) {
    for (const ChapterStyle style : allChapterStyles) {
        if (rawValue(style) == text)
            return style;
    }
    return std::nullopt;
}

std::string_view displayName(ChapterStyle style) {
    switch (style) {
    case ChapterStyle::card:
        return "Separate title slide";
    case ChapterStyle::overlay:
        return "Overlay on first photo";
    }
    return {};
}

} // namespace ProjectModel
