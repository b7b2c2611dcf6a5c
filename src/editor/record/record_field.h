// A field of the editing panel.
#pragma once

#include <QStringList>

namespace velmora {

/// A field of the editing panel.
struct RecordField {
    QString column;
    QString caption;
    bool key = false;
    /// The query of the drop-down's entries; empty for free text.
    QString pickList;
    /// Whether it is shown as a drop-down; a locked key is shown as text.
    bool dropDown = false;
    QStringList entries;
    /// What is typed, or the entry that is chosen.
    QString text;
    /// Whether the user may change it now.
    bool enabled = false;

    /// What goes into the database: the text, or the code of the chosen entry.
    QString value() const;
};

} // namespace velmora
