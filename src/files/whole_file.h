// Files read and written in one piece.
#pragma once

#include <QByteArray>
#include <QString>

namespace velmora {

/// The whole content of the file. Throws FileError.
QByteArray readWholeFile(const QString& path);

/// Writes the file whole or not at all: a file that stood there before is replaced only when every byte of
/// the new one has been written. Throws FileError.
void writeWholeFile(const QString& path, const QByteArray& content);

} // namespace velmora
