#include "editor/window/editor_layout.h"

#include <algorithm>

namespace velmora {

namespace {

/// Twips between neighbours, and from the window's edges.
constexpr int gap = 100;
constexpr int aboveErrorLine = 300;
constexpr int belowStripTop = 400;
/// How much of the list stays visible while fields scroll, in rows.
constexpr int leastListRows = 4;
constexpr int leastFieldRows = 2;

} // namespace

int fromTwips(int twips, int dotsPerInch)
{
    return qRound(twips * dotsPerInch / 1440.0);
}

QSize leastEditorSize(int dotsPerInch)
{
    return {fromTwips(12000, dotsPerInch), fromTwips(3500, dotsPerInch)};
}

QSize usualEditorSize(int dotsPerInch)
{
    return leastEditorSize(dotsPerInch)
        .expandedTo({fromTwips(13500, dotsPerInch), fromTwips(8500, dotsPerInch)});
}

EditorLayout layOutEditor(const EditorMeasures& m)
{
    const auto twips = [&m](int length) { return fromTwips(length, m.dotsPerInch); };
    const int space = twips(gap);
    const int width = m.inside.width();
    EditorLayout at;
    at.fieldStep = m.row + space;

    // The frame counts into the window's height, so the error line stands that much lower inside.
    const int errorTop = std::min(m.inside.height() + m.frame - 3 * m.label, m.inside.height() - m.label);
    at.errorLine = {space, errorTop, width - 2 * space, m.label};
    at.cancel = {QPoint(width - m.cancel.width() - twips(200), errorTop - m.cancel.height() - space),
                 m.cancel};
    at.ok = {QPoint(at.cancel.left() - m.ok.width() - space, errorTop - m.ok.height() - space), m.ok};
    at.goOn = {at.ok.left(), at.ok.top() - m.ok.height() - space, at.cancel.right() + 1 - at.ok.left(),
               m.ok.height()};

    at.topRow = {space, space, width - 2 * space, m.topRow};
    const int stripTop = at.topRow.top() + m.topRow + space;
    const int frameTop = stripTop + std::max(twips(belowStripTop), m.tabRow + space);
    int stripBottom = errorTop - space - m.frame;
    if (m.fields > 0) {
        const int bottom = errorTop - twips(aboveErrorLine);
        const int wanted = m.fields * at.fieldStep - space;
        const int least = std::min(wanted, leastFieldRows * at.fieldStep - space);
        const int belowList = frameTop + m.filters * at.fieldStep + leastListRows * m.row + 2 * space;
        const int top = std::min(std::max(bottom - wanted, belowList), bottom - least);
        at.panel = {2 * space, top, at.ok.left() - 3 * space, bottom - top};
        stripBottom = top - space;
    }
    at.strip = {space, stripTop, width - 2 * space, std::max(0, stripBottom - stripTop)};

    at.frame = {2 * space, frameTop, width - 4 * space, std::max(0, stripBottom - space - frameTop)};
    const int listTop = frameTop + m.filters * at.fieldStep;
    at.list = {at.frame.left(), listTop, at.frame.width(), std::max(0, at.frame.bottom() + 1 - listTop)};
    return at;
}

} // namespace velmora
