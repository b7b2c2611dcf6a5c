// Reading the data files: fields separated by ";", quoted as in RFC 4180.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velmora {

/// The rows of `text`. A field that holds ";", a quote or a line end stands in quotes ("), a quote in it is
/// doubled. Throws std::invalid_argument naming the row where a quote is not closed or stands in an unquoted
/// field.
QList<QStringList> parseSeparatedValues(const QString& text);

/// The rows of a data file; each has as many fields as the heading line, which comes first. Throws FileError
/// naming the file that is missing or has a broken row.
QList<QStringList> readSeparatedValues(const QString& path);

} // namespace velmora
