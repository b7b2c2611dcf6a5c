#include "factory/factory_data.h"

#include "files/separated_values.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QList<QStringList> readRowsBelowHeading(const QString& folder, const QString& name)
{
    return readSeparatedValues(folder + u'/' + name).sliced(1);
}

/// One text row per code and language; the heading names the languages.
QList<QStringList> readTexts(const QString& folder)
{
    const QList<QStringList> table = readSeparatedValues(folder + "/texts.csv"_L1);
    QList<QStringList> texts;
    for (const QStringList& row : table.sliced(1))
        for (qsizetype language = 1; language < row.size(); ++language)
            texts << QStringList{"$$DESC_"_L1 + table[0][language], row[0], row[language]};
    return texts;
}

/// The catalogue of a model, in the columns of EQUIPMENT_PARAMETERS.
QList<QStringList> readCatalogue(const QString& folder, const QString& model)
{
    QList<QStringList> parameters;
    for (const QStringList& row : readRowsBelowHeading(folder, "catalogue/"_L1 + model + ".csv"_L1))
        parameters << QStringList{model, row[0], row[1], row[2], row[3], row[4], row[5]};
    return parameters;
}

} // namespace

QList<TableRows> readFactoryData(const QString& folder)
{
    const QList<QStringList> models = readRowsBelowHeading(folder, u"equipment.csv"_s);
    QList<TableRows> data = {
        {u"SYSTEM_PARAMETERS"_s, readRowsBelowHeading(folder, u"settings.csv"_s)},
        {u"SYSTEM_PARAMETERS"_s, readTexts(folder)},
        {u"CREATION_FLAGS"_s, readRowsBelowHeading(folder, u"flags.csv"_s)},
        {u"LEVELS"_s, readRowsBelowHeading(folder, u"levels.csv"_s)},
        {u"TYPES"_s, readRowsBelowHeading(folder, u"types.csv"_s)},
        {u"EQUIPMENT"_s, models},
    };
    for (const QStringList& model : models)
        data << TableRows{u"EQUIPMENT_PARAMETERS"_s, readCatalogue(folder, model[0])};
    return data;
}

} // namespace velmora
