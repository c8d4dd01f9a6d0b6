// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/CommandLine/ProgressLine.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace CommandLine {

namespace {

constexpr int widestBar = 40;
constexpr int narrowestBar = 8;

std::string timeText(double seconds) {
    const long whole = std::lround(std::ceil(seconds));
    char text[48];
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

/// Characters rather than bytes, which is columns for the labels in use.
int width(std::string_view text) {
    return static_cast<int>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string cut(std::string_view text, int columns) {
    std::string result;
    int used = 0;
    for (const char c : text) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80 && ++used > columns)
            break;
        result += c;
    }
    return result;
}

} // namespace

std::string progressLine(std::string_view label, double fraction, std::chrono::duration<double> elapsed,
                         int columns) {
    fraction = std::clamp(fraction, 0.0, 1.0);
    char percent[16];
    std::snprintf(percent, sizeof percent, "%3d %%", static_cast<int>(fraction * 100));
    std::string after = std::string{"  "} + percent;
    // The first moments tell nothing about the rest.
    constexpr std::chrono::duration<double> settled{1};
    if (fraction > 0 && fraction < 1 && elapsed >= settled) {
        const double left = elapsed.count() * (1 - fraction) / fraction;
        if (left < 100 * 3600)
            after += "  " + timeText(left) + " left";
    }

    const int barWidth = std::min(widestBar, columns - width(label) - 2 - width(after));
    if (barWidth < narrowestBar)
        return cut(std::string{label} + after, columns);
    const int filled = static_cast<int>(std::lround(fraction * barWidth));
    std::string bar;
    for (int column = 0; column < barWidth; ++column)
        bar += column < filled ? "━" : "─";
    return std::string{label} + "  " + bar + after;
}

} // namespace CommandLine
