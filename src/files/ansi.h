// Text files of the devices and of Windows programs: Windows-1252, called ANSI.
#pragma once

#include <QByteArray>
#include <QString>

namespace velmora {

/// Appends `text` to `bytes` in Windows-1252. A character outside it becomes "?".
/// Returns whether every character could be written.
/// The format: https://encoding.spec.whatwg.org/index-windows-1252.txt
bool appendAnsi(QByteArray& bytes, QStringView text);

/// Whether Windows-1252 has every character of `text`.
bool fitsAnsi(QStringView text);

/// The text of bytes in Windows-1252. Each of the five bytes without a character there stands for the control
/// character of its number, which appendAnsi() turns back.
QString decodeAnsi(const QByteArray& bytes);

/// The text of a file: UTF-8 where a byte-order mark says so or the bytes are valid UTF-8, else Windows-1252.
QString decodeText(const QByteArray& bytes);

} // namespace velmora
