// The controls of the table editor, and where they stand.
#pragma once

#include "editor/list/TablePane.h"
#include "editor/panel/RecordPanel.h"
#include "editor/transfer/window/TransferActions.h"
#include "editor/window/ErrorLine.h"
#include "editor/window/FindBox.h"
#include "editor/window/RecordActions.h"
#include "editor/window/TabStrip.h"

#include <QPushButton>

namespace velmora {

/// Makes the controls in the window that they belong to; nothing happens yet when they are used.
class EditorControls {
    QWidget& m_window;
    QWidget* m_topRow;
    int m_rowHeight;

public:
    EditorControls(MMain& main, QWidget& window);

    TabStrip* const strip;
    TablePane* const pane;
    RecordView* const list;
    RecordActions* const actions;
    TransferActions* const transfer;
    FindBox* const find;
    RecordPanel* const panel;
    QPushButton* const ok;
    QPushButton* const cancel;
    QPushButton* const goOn;
    ErrorLine* const error;

    /// Puts everything in its place.
    void arrange() const;

private:
    void SortTabFields() const;
};

} // namespace velmora
