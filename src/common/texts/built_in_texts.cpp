#include "common/texts/built_in_texts.h"

#include "files/separated_values.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The rows of the texts that a new database gets too, by code; the heading under "code".
QHash<QString, QStringList> readTexts()
{
    QHash<QString, QStringList> texts;
    for (const QStringList& row : readSeparatedValues(u":/texts.csv"_s))
        texts.insert(row[0], row);
    return texts;
}

} // namespace

QString builtInText(const QString& code, const QString& language)
{
    // The messages below M200 are the database's own: one that lacks them is told so.
    const bool own = code.startsWith(u'M') && QStringView(code).sliced(1).left(3).toInt() >= 200;
    if (!own)
        return {};
    static const QHash<QString, QStringList> texts = readTexts();
    const qsizetype column = std::max<qsizetype>(texts.value(u"code"_s).indexOf(language), 1);
    return texts.value(code).value(column);
}

} // namespace velmora
