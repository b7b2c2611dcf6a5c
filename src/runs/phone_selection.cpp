#include "runs/phone_selection.h"

#include "common/MMain.h"
#include "files/stored_path.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto separator = " \\\\ "_L1;

QList<ListEntry> entries(MMain& main, const QString& statement)
{
    QList<ListEntry> found;
    for (Recordset rows = main.query(statement); !rows.eof(); rows.moveNext())
        found << ListEntry{rows.text(0), rows.text(1)};
    return found;
}

QString setting(MMain& main, const QString& code, const QString& subcode)
{
    const Recordset rows = main.query("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '"_L1 + code +
                                      "' AND SY_SUBCODE = '"_L1 + subcode + "'"_L1);
    return rows.eof() ? QString() : rows.text(0);
}

} // namespace

QString ListEntry::text() const
{
    return code + separator + description;
}

QString codeOf(const QString& entryText)
{
    const qsizetype end = entryText.indexOf(separator);
    return end < 0 ? entryText : entryText.first(end);
}

QList<ListEntry> companies(MMain& main)
{
    return entries(main, u"SELECT DISTINCT CO_CODE, CO_DESC FROM COMPANY ORDER BY CO_CODE"_s);
}

QList<ListEntry> modelsOf(MMain& main, const QString& company)
{
    return entries(main,
                   "SELECT DISTINCT EQUIPMENT.EQ_CODE, EQUIPMENT.EQ_DESC FROM EQUIPMENT INNER JOIN PHONES "
                   "ON EQUIPMENT.EQ_CODE = PHONES.EQ_CODE WHERE PHONES.CO_CODE = '"_L1 +
                       company + "' ORDER BY EQUIPMENT.EQ_CODE"_L1);
}

QList<ListEntry> phonesOf(MMain& main, const QString& company, const QString& model, const QString& from)
{
    const QString lowest = from.isEmpty() ? QString() : "' AND PH_CODE >= '"_L1 + from;
    return entries(main, "SELECT DISTINCT PH_CODE, PH_DESC FROM PHONES WHERE CO_CODE = '"_L1 + company +
                             "' AND EQ_CODE = '"_L1 + model + lowest + "' ORDER BY PH_CODE"_L1);
}

QList<ListEntry> phonesOf(MMain& main, const QString& company)
{
    return entries(main, "SELECT PH_CODE, PH_DESC FROM PHONES WHERE CO_CODE = '"_L1 + company +
                             "' ORDER BY PH_CODE"_L1);
}

QString rememberedFolder(MMain& main, const QString& owner, const QString& subcode)
{
    return withoutTrailingSeparator(setting(main, owner, subcode));
}

Levels rememberedLevels(MMain& main, const QString& company, const QString& model, Levels levels)
{
    const QString remembered = setting(main, company + model, u"$$DEFGEN"_s);
    bool* const boxes[] = {&levels.phone, &levels.company, &levels.equipment};
    for (qsizetype box = 0; box < 3 && box < remembered.size(); ++box)
        if (remembered[box] != u' ')
            *boxes[box] = remembered[box] != u'0';
    return levels;
}

} // namespace velmora
