#include "editor/language_setting.h"

#include "common/MMain.h"
#include "database/transaction.h"
#include "editor/table_catalogue.h"

using namespace Qt::StringLiterals;

namespace velmora {

QStringList languagesWithTexts(MMain& main)
{
    constexpr auto prefix = "$$DESC_"_L1;
    QStringList languages;
    for (Recordset rows = main.connection.select(
             u"SELECT DISTINCT SY_CODE FROM SYSTEM_PARAMETERS WHERE SY_CODE LIKE '$$DESC%'"_s);
         !rows.eof(); rows.moveNext())
        if (rows.text(0).startsWith(prefix) && rows.text(0) != prefix)
            languages << rows.text(0).sliced(prefix.size());
    languages.sort();
    return languages;
}

bool mayChangeLanguage(MMain& main)
{
    return isGranted(main, u"SYSTEM_PARAMETERS"_s);
}

void changeLanguage(MMain& main, const QString& language)
{
    Transaction change(main.connection);
    // Where there are several rows, every one: which of them is read first is the engine's affair.
    if (main.connection.execute(u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = ? WHERE SY_CODE = '$$LNG'"_s,
                                {language}) == 0)
        main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$LNG', '$', ?)"_s, {language});
    change.commit();
}

} // namespace velmora
