// Texts as they are compared when somebody looks for something.
#pragma once

#include <QStringList>

namespace velmora {

/// The text in small letters, without accents, ligatures taken apart: two texts that a reader takes for the
/// same when looking for a word give the same.
QString foldedText(const QString& text);

/// Adds the folded text to another text.
void appendFolded(QString& folded, const QString& text);

/// The words of what was typed, folded; none of an empty text.
QStringList foldedWords(const QString& text);

} // namespace velmora
