// What the readers of all models have in common: from the bytes of a device file back to its parameters.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace velmora {

/// Why bytes are not the file that a writer makes.
enum class Unreadable {
    /// They are nothing of the kind.
    Foreign,
    /// They begin like one and do not go on to its end, or go on beyond it.
    CutOff,
    /// The words of an image do not sum to 0.
    WrongChecksum,
};

/// What stands in a device file.
struct FileContents {
    /// The values by parameter code. Where a value holds what the format puts between parameters, nobody can
    /// tell them apart: then this is only one way to read the bytes.
    QMap<QString, QString> values;
    /// Set where the bytes can't be read; there are no values then.
    std::optional<Unreadable> failure;
};

/// The reader of one module: a pure function that takes any bytes.
using Reader = FileContents (*)(const QByteArray& bytes);

} // namespace velmora
