#include "runs/phone_selection.h"

#include "common/MMain.h"
#include "database/transaction.h"
#include "files/stored_path.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QList<ListEntry> entries(MMain& main, const QString& statement)
{
    QList<ListEntry> found;
    for (Recordset rows = main.query(statement); !rows.eof(); rows.moveNext())
        found << ListEntry{rows.text(0), rows.text(1)};
    return found;
}

} // namespace

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

void remember(MMain& main, const QString& owner, const QString& subcode, const QString& value)
{
    Transaction transaction(main.connection);
    main.connection.execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = ? AND SY_SUBCODE = ?"_s,
                            {owner, subcode});
    main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES(?, ?, ?)"_s, {owner, subcode, value});
    transaction.commit();
}

QString rememberedFolder(MMain& main, const QString& owner, const QString& subcode)
{
    return withoutTrailingSeparator(main.setting(owner, subcode).value_or(QString()));
}

} // namespace velmora
