// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideFont.h>
#include <Roamly/Slides/StyledText.h>

#include <QTextBoundaryFinder>
#include <QTextCharFormat>
#include <algorithm>
#include <array>
#include <vector>

namespace Slides {

namespace {

constexpr char16_t ellipsis = 0x2026;
constexpr char16_t textPresentation = 0xFE0E;
constexpr char16_t emojiPresentation = 0xFE0F;

/// The scripts for which the text engine wants a font with shaping rules of their own.
struct ScriptFamily {
    QChar::Script script;
    const char16_t* family;
};
constexpr std::array scriptFamilies{
    ScriptFamily{QChar::Script_Syriac, u"Noto Sans Syriac"},
    ScriptFamily{QChar::Script_Thaana, u"Noto Sans Thaana"},
    ScriptFamily{QChar::Script_Nko, u"Noto Sans NKo"},
    ScriptFamily{QChar::Script_Devanagari, u"Noto Sans Devanagari"},
    ScriptFamily{QChar::Script_Bengali, u"Noto Sans Bengali"},
    ScriptFamily{QChar::Script_Gurmukhi, u"Noto Sans Gurmukhi"},
    ScriptFamily{QChar::Script_Gujarati, u"Noto Sans Gujarati"},
    ScriptFamily{QChar::Script_Oriya, u"Noto Sans Oriya"},
    ScriptFamily{QChar::Script_Tamil, u"Noto Sans Tamil"},
    ScriptFamily{QChar::Script_Telugu, u"Noto Sans Telugu"},
    ScriptFamily{QChar::Script_Kannada, u"Noto Sans Kannada"},
    ScriptFamily{QChar::Script_Malayalam, u"Noto Sans Malayalam"},
    ScriptFamily{QChar::Script_Sinhala, u"Noto Sans Sinhala"},
    ScriptFamily{QChar::Script_Khmer, u"Noto Sans Khmer"},
};
/// Below the first of them, and of the emoji.
constexpr char16_t firstStyledCharacter = 0x0700;

struct Range {
    char32_t first;
    char32_t last;
};

/// Characters that are shown as coloured pictures without being asked to (Unicode's Emoji_Presentation, with
/// whole blocks where nearly all of a block is).
constexpr std::array emojiRanges{
    Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},   Range{0x23F0, 0x23F0},   Range{0x23F3, 0x23F3},
    Range{0x25FD, 0x25FE},   Range{0x2614, 0x2615},   Range{0x2648, 0x2653},   Range{0x267F, 0x267F},
    Range{0x2693, 0x2693},   Range{0x26A1, 0x26A1},   Range{0x26AA, 0x26AB},   Range{0x26BD, 0x26BE},
    Range{0x26C4, 0x26C5},   Range{0x26CE, 0x26CE},   Range{0x26D4, 0x26D4},   Range{0x26EA, 0x26EA},
    Range{0x26F2, 0x26F3},   Range{0x26F5, 0x26F5},   Range{0x26FA, 0x26FA},   Range{0x26FD, 0x26FD},
    Range{0x2705, 0x2705},   Range{0x270A, 0x270B},   Range{0x2728, 0x2728},   Range{0x274C, 0x274C},
    Range{0x274E, 0x274E},   Range{0x2753, 0x2755},   Range{0x2757, 0x2757},   Range{0x2795, 0x2797},
    Range{0x27B0, 0x27B0},   Range{0x27BF, 0x27BF},   Range{0x2B1B, 0x2B1C},   Range{0x2B50, 0x2B50},
    Range{0x2B55, 0x2B55},   Range{0x1F004, 0x1F004}, Range{0x1F0CF, 0x1F0CF}, Range{0x1F18E, 0x1F18E},
    Range{0x1F191, 0x1F19A}, Range{0x1F1E6, 0x1F1FF}, Range{0x1F201, 0x1F201}, Range{0x1F21A, 0x1F21A},
    Range{0x1F22F, 0x1F22F}, Range{0x1F232, 0x1F236}, Range{0x1F238, 0x1F23A}, Range{0x1F250, 0x1F251},
    Range{0x1F300, 0x1F64F}, Range{0x1F680, 0x1F6FF}, Range{0x1F7E0, 0x1F7EB}, Range{0x1F90C, 0x1F9FF},
    Range{0x1FA70, 0x1FAFF},
};

bool isEmoji(char32_t character) {
    const auto* range =
        std::partition_point(emojiRanges.begin(), emojiRanges.end(),
                             [character](const Range& candidate) { return candidate.last < character; });
    return range != emojiRanges.end() && range->first <= character;
}

/// `cluster` is what a reader takes for one character.
bool isEmojiCluster(QStringView cluster) {
    if (cluster.contains(QChar(textPresentation)))
        return false;
    if (cluster.contains(QChar(emojiPresentation)))
        return true;
    const bool isPair = cluster.size() > 1 && cluster[0].isHighSurrogate() && cluster[1].isLowSurrogate();
    return isEmoji(isPair ? QChar::surrogateToUcs4(cluster[0], cluster[1]) : cluster[0].unicode());
}

QChar::Script scriptOf(QStringView cluster) {
    const bool isPair = cluster.size() > 1 && cluster[0].isHighSurrogate() && cluster[1].isLowSurrogate();
    return QChar::script(isPair ? QChar::surrogateToUcs4(cluster[0], cluster[1]) : cluster[0].unicode());
}

/// The font that a part of the text asks for.
enum class Styling { none, emoji, script };

struct Cluster {
    int length = 0;
    Styling styling = Styling::none;
    QChar::Script script = QChar::Script_Common;

    [[nodiscard]] bool looksLike(const Cluster& other) const {
        return styling == other.styling && (styling != Styling::script || script == other.script);
    }
};

bool hasOwnFamily(QChar::Script script) {
    return std::any_of(scriptFamilies.begin(), scriptFamilies.end(),
                       [script](const ScriptFamily& entry) { return entry.script == script; });
}

QFont fontFor(const Cluster& cluster, const QFont& font) {
    if (cluster.styling == Styling::emoji)
        return SlideFont::emojiFont(font.pixelSize());
    const auto* entry = std::find_if(scriptFamilies.begin(), scriptFamilies.end(),
                                     [&](const ScriptFamily& each) { return each.script == cluster.script; });
    return SlideFont::withFirstFamily(font, QString::fromUtf16(entry->family));
}

} // namespace

StyledText::StyledText(const QString& paragraph, const QFont& font) {
    if (std::all_of(paragraph.begin(), paragraph.end(),
                    [](QChar character) { return character.unicode() < firstStyledCharacter; })) {
        text = paragraph;
        return;
    }

    std::vector<Cluster> clusters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, paragraph);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) > start; start = end) {
        const QStringView view = QStringView(paragraph).mid(start, end - start);
        Cluster cluster{.length = 0, .styling = Styling::none, .script = scriptOf(view)};
        if (isEmojiCluster(view))
            cluster.styling = Styling::emoji;
        else if (hasOwnFamily(cluster.script))
            cluster.styling = Styling::script;
        const qsizetype sizeBefore = text.size();
        for (const QChar character : view) {
            if (cluster.styling != Styling::emoji || character != QChar(emojiPresentation))
                text += character;
        }
        cluster.length = static_cast<int>(text.size() - sizeBefore);
        clusters.push_back(cluster);
    }

    // The text engine takes spaces and punctuation as part of the script before them, at the beginning of a
    // text of the one after.
    const auto hasScript = [](const Cluster& cluster) {
        return cluster.styling != Styling::emoji && cluster.script > QChar::Script_Common;
    };
    const auto first = std::find_if(clusters.begin(), clusters.end(), hasScript);
    Cluster nearest = first != clusters.end() ? *first : Cluster{};
    for (Cluster& cluster : clusters) {
        if (hasScript(cluster)) {
            nearest = cluster;
        } else if (cluster.styling == Styling::none) {
            cluster.styling = nearest.styling;
            cluster.script = nearest.script;
        }
    }

    Cluster previous;
    int start = 0;
    for (const Cluster& cluster : clusters) {
        if (cluster.styling != Styling::none) {
            if (!formats.isEmpty() && cluster.looksLike(previous)) {
                formats.back().length += cluster.length;
            } else {
                QTextCharFormat format;
                format.setFont(fontFor(cluster, font));
                formats.append({start, cluster.length, format});
            }
        }
        start += cluster.length;
        previous = cluster;
    }
}

StyledText StyledText::elided(int start, int length) const {
    while (length > 0 && text[start + length - 1].isSpace())
        --length;
    StyledText result;
    result.text = text.mid(start, length) + QChar(ellipsis);
    for (QTextLayout::FormatRange range : formats) {
        const int from = std::max(range.start, start);
        const int to = std::min(range.start + range.length, start + length);
        if (from >= to)
            continue;
        range.start = from - start;
        // The ellipsis goes with what it stands behind.
        range.length = to - from + (to == start + length ? 1 : 0);
        result.formats.append(range);
    }
    return result;
}

} // namespace Slides
