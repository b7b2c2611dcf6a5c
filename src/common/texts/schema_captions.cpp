#include "common/texts/schema_captions.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

QString tableCaption(MMain& main, const QString& table)
{
    return main.textOr("FPARAMETERS_"_L1 + table.toUpper(), table);
}

QString columnCaption(MMain& main, const Column& column)
{
    return main.textOr(column.name, column.description.isEmpty() ? column.name : column.description);
}

} // namespace velmora
