// Files read and written in one piece.
#pragma once

#include <QByteArray>
#include <QString>

namespace velmora {

/// The whole content of the file. Throws FileError.
QByteArray readWholeFile(const QString& path);

/// Writes the file whole or not at all: a file that stood there before is replaced only when every byte of
/// the new one has been written. The new one may be read by those who could read the file `like`, or, when it
/// is empty, the replaced one (see openNew()). Throws FileError.
void writeWholeFile(const QString& path, const QByteArray& content, const QString& like = {});

} // namespace velmora
