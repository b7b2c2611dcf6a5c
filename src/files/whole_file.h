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

/// Throws FileError where writeWholeFile() would do so now: for who wants to know before a long work whose
/// outcome is to be written. What stands there stays as it is.
void checkWritable(const QString& path);

} // namespace velmora
