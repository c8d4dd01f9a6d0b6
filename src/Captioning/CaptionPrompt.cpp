// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionPrompt.h>
#include <Foundation/Text.h>

namespace Captioning::CaptionPrompt {

namespace {

std::string guidanceSentence(const std::optional<std::string>& guidance) {
    const std::string_view wish = guidance ? Foundation::trimmed(*guidance) : std::string_view{};
    if (wish.empty())
        return {};
    return " Guidance for tone and interpretation: " + std::string{wish} + ".";
}

} // namespace

std::string text(const std::vector<std::string>& tags, const std::optional<std::string>& guidance) {
    std::string shown;
    for (const std::string& tag : tags)
        shown += (shown.empty() ? "" : ", ") + tag;
    if (tags.empty())
        shown = "a photograph";
    return "Write a single short caption (one sentence, no quotes) for a holiday photo that shows: " + shown +
           ". Be concrete and natural." + guidanceSentence(guidance) + " Return only the caption.";
}

std::string vision(const std::optional<std::string>& guidance) {
    return "Write a single short caption (one sentence, no quotes) for this holiday photo. Be concrete and "
           "natural." +
           guidanceSentence(guidance) + " Return only the caption.";
}

} // namespace Captioning::CaptionPrompt
