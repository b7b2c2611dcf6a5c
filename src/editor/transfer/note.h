// What is to be told about a file or one of its lines.
#pragma once

#include <QStringList>

namespace velmora {

/// A message and what it is about, without its words: tens of thousands of them are made, and few are read.
struct Note {
    /// Empty for words that no message has.
    QString code;
    QStringList about;
};

} // namespace velmora
