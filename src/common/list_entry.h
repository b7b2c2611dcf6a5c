// An entry of a list: a code and what it stands for.
#pragma once

#include <QString>

namespace velmora {

/// An entry of a selection list.
struct ListEntry {
    QString code;
    QString description;

    /// The entry as the lists show it: code, " \\ ", description.
    QString text() const;
};

/// The code of an entry's text: everything left of the first " \\ ".
QString codeOf(const QString& entryText);

} // namespace velmora
