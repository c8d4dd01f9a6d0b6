#include <Roamly/SlideFont.h>

#include <QTextBoundaryFinder>
#include <QTextCharFormat>

#include <algorithm>
#include <array>
#include <iterator>

namespace Roamly::SlideFont {

namespace {

constexpr char16_t textPresentation = 0xFE0E;
constexpr char16_t emojiPresentation = 0xFE0F;

/// The scripts that travellers' places are written in. What none of these has, the system's own fallback finds.
const QStringList& fallbackFamilies() {
    static const QStringList families{
        QStringLiteral("Noto Sans"),        QStringLiteral("Noto Sans Arabic"),
        QStringLiteral("Noto Sans Hebrew"), QStringLiteral("Noto Sans Devanagari"),
        QStringLiteral("Noto Sans Thai"),   QStringLiteral("Noto Sans CJK JP"),
        QStringLiteral("Noto Color Emoji"), QStringLiteral("sans-serif"),
    };
    return families;
}

QFont makeFont(const QStringList& families, int pixelSize, QFont::Weight weight) {
    QFont font(families, -1, weight);
    font.setPixelSize(pixelSize);
    font.setStyle(QFont::StyleNormal);
    font.setStretch(QFont::Unstretched);
    font.setStyleHint(QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

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

} // namespace

QFont font(Family family, int pixelSize, QFont::Weight weight) {
    QStringList families;
    if (family == Family::display)
        families << QStringLiteral("Inter Display");
    families << QStringLiteral("Inter") << fallbackFamilies();
    return makeFont(families, pixelSize, weight);
}

QList<QTextLayout::FormatRange> emojiFormats(const QString& text, int pixelSize) {
    QList<QTextLayout::FormatRange> formats;
    // Nothing below this character is an emoji unless a selector, itself above it, follows.
    const auto mayHoldEmoji = [](QChar character) { return character.unicode() >= emojiRanges.front().first; };
    if (std::none_of(text.begin(), text.end(), mayHoldEmoji))
        return formats;

    QTextCharFormat format;
    format.setFont(makeFont(QStringList{QStringLiteral("Noto Color Emoji"), QStringLiteral("Inter")}
                                << fallbackFamilies(),
                            pixelSize, QFont::Normal));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) > start; start = end) {
        if (!isEmojiCluster(QStringView(text).mid(start, end - start)))
            continue;
        const int from = static_cast<int>(start);
        const int length = static_cast<int>(end - start);
        if (!formats.isEmpty() && formats.back().start + formats.back().length == from)
            formats.back().length += length;
        else
            formats.append({from, length, format});
    }
    return formats;
}

} // namespace Roamly::SlideFont
