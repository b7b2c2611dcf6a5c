// The files of phones as they lie in a folder.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velmora {

/// What lies where a phone's file is looked for.
struct FoundFile {
    /// Whether anything does.
    bool exists = false;
    /// Nothing where it can't be read.
    std::optional<QByteArray> bytes;
    /// Why it can't be read, in the system's words; empty where it is no file, or larger than any device's.
    QString reason;
};

/// No file of a device is larger, in bytes: what is, is not read.
constexpr qint64 largestFile = 16 * 1024 * 1024;

/// Reads the file at `path`. Never throws, and never waits for a pipe.
FoundFile findFile(const QString& path);

} // namespace velmora
