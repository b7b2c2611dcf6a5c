// What the readers of all models have in common: from the bytes of a device file back to its parameters.
#pragma once

#include <QByteArrayView>
#include <QList>

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

/// A parameter as it stands in a file; it refers to the bytes that were read.
struct FileParameter {
    QByteArrayView code;
    QByteArrayView value;
};

/// What stands in a device file.
struct FileContents {
    /// In the order of the file; where a code comes twice, the last one counts. Where a value holds what the
    /// format puts between parameters, nobody can tell them apart: then this is only one way to read the
    /// bytes.
    QList<FileParameter> parameters;
    /// Set where the bytes can't be read; there are no parameters then.
    std::optional<Unreadable> failure;
};

/// The reader of one module: a pure function that takes any bytes.
using Reader = FileContents (*)(QByteArrayView bytes);

} // namespace velmora
