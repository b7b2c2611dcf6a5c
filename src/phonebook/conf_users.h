// The user list of a telephone server, "confUsers.ini".
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace velmora {

/// An entry of the list.
struct ConfUser {
    /// The 1-based line that opens it.
    qsizetype line = 0;
    QString extension;
    /// Name and surname, each followed by a blank.
    QString name;
};

/// The entries of the file in its order, without malformed ones; nothing when the file is no user list: no
/// line of it begins with "[User". The bytes are UTF-8 where a byte-order mark says so or they are valid
/// UTF-8, else Windows-1252; lines end in CR LF or LF.
///
/// The file is a text of lines: "[Users]" as an optional first one, then entries of four lines, "[User" with
/// anything after it, "Name=", "Surname=" and "Extension=" with their values. A line that is not the expected
/// one ends its entry, and is not looked at again. The last line of the file never opens an entry.
std::optional<QList<ConfUser>> readConfUsers(const QByteArray& file);

} // namespace velmora
