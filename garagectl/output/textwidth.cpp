#include "garagectl/output/textwidth.h"

#include <QTextBoundaryFinder>
#include <QVector>

#include <utf8proc.h>

#include <algorithm>

namespace {

constexpr uint emojiPresentation = 0xFE0F; // variation selector: the character before it is drawn as an emoji
constexpr uint zeroWidthJoiner = 0x200D;
constexpr uint firstRegionalIndicator = 0x1F1E6; // a pair of these is a flag
constexpr uint lastRegionalIndicator = 0x1F1FF;

/// What a reader takes for one character: its marks and joined characters share its cells.
int graphemeWidth(const QString &grapheme)
{
    int widest = 0;
    for (const uint character : grapheme.toUcs4()) {
        const bool isFlagPart = character >= firstRegionalIndicator && character <= lastRegionalIndicator;
        const bool isEmoji = character == emojiPresentation || isFlagPart;
        widest = std::max(widest, isEmoji ? 2 : utf8proc_charwidth(utf8proc_int32_t(character)));
    }
    return widest;
}

/// Calls `visit` with each grapheme until it returns false.
template<typename Visit> void forEachGrapheme(const QString &text, Visit visit)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    auto start = finder.position();
    for (auto end = finder.toNextBoundary(); end > start; end = finder.toNextBoundary()) {
        if (!visit(text.mid(start, end - start)))
            return;
        start = end;
    }
}

bool actsOnTerminal(uint character)
{
    const auto category = utf8proc_category(utf8proc_int32_t(character));
    const bool isFormat = category == UTF8PROC_CATEGORY_CF && character != zeroWidthJoiner;
    return category == UTF8PROC_CATEGORY_CC || category == UTF8PROC_CATEGORY_CS || isFormat;
}

} // namespace

int TextWidth::width(const QString &text)
{
    int cells = 0;
    forEachGrapheme(text, [&cells](const QString &grapheme) {
        cells += graphemeWidth(grapheme);
        return true;
    });
    return cells;
}

QString TextWidth::elided(const QString &text, int cells)
{
    QString beginning;
    int used = 0;
    bool fits = true;
    auto fittingSize = beginning.size(); // of the beginning that leaves a cell for the ellipsis
    forEachGrapheme(text, [&](const QString &grapheme) {
        used += graphemeWidth(grapheme);
        fits = used <= cells;
        beginning += grapheme;
        if (used < cells)
            fittingSize = beginning.size();
        return fits;
    });
    return fits ? text : beginning.left(fittingSize) + QChar(0x2026);
}

QString TextWidth::printable(const QString &text)
{
    QVector<uint> characters = text.simplified().toUcs4();
    std::replace_if(characters.begin(), characters.end(), actsOnTerminal, uint(QChar::ReplacementCharacter));
    return QString::fromUcs4(characters.constData(), characters.size());
}
