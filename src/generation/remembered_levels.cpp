#include "generation/remembered_levels.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

Levels rememberedLevels(MMain& main, const QString& company, const QString& model, Levels levels)
{
    const QString remembered = main.setting(company + model, u"$$DEFGEN"_s).value_or(QString());
    bool* const boxes[] = {&levels.phone, &levels.company, &levels.equipment};
    for (qsizetype box = 0; box < 3 && box < remembered.size(); ++box)
        if (remembered[box] != u' ')
            *boxes[box] = remembered[box] != u'0';
    return levels;
}

QString textOf(const Levels& levels)
{
    QString text;
    for (const bool included : {levels.phone, levels.company, levels.equipment})
        text += included ? u'1' : u'0';
    return text;
}

} // namespace velmora
