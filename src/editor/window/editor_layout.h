// Where the controls of the table editor stand.
#pragma once

#include <QRect>

namespace velmora {

/// What the layout depends on. Lengths are in pixels.
struct EditorMeasures {
    QSize inside;
    /// By how much the window with its frame is higher than its inside.
    int frame = 0;
    int dotsPerInch = 96;
    /// Heights: of the row of buttons at the top, of the tabs, of the error line, of a filter or field.
    int topRow = 0;
    int tabRow = 0;
    int label = 0;
    int row = 0;
    QSize ok;
    QSize cancel;
    /// How many key columns and how many editing fields there are; no fields while the panel is hidden.
    int filters = 0;
    int fields = 0;
};

struct EditorLayout {
    QRect topRow;
    /// The tabs with everything that belongs to the chosen one.
    QRect strip;
    /// `RCompany`: what the strip leaves for filters and list.
    QRect frame;
    QRect list;
    /// What is visible of the fields; they scroll in it when it is too low for all of them.
    QRect panel;
    QRect ok;
    QRect cancel;
    /// Above the two, as wide as both together.
    QRect goOn;
    QRect errorLine;
    /// From the top of one field to that of the next.
    int fieldStep = 0;
};

/// Pixels for a length in twips, 1/1440 inch.
int fromTwips(int twips, int dotsPerInch);

/// The smallest inside of the window.
QSize leastEditorSize(int dotsPerInch);

/// The inside that the window has as long as nobody changes it.
QSize usualEditorSize(int dotsPerInch);

EditorLayout layOutEditor(const EditorMeasures& measures);

} // namespace velmora
