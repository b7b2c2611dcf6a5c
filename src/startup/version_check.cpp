#include "startup/version_check.h"

#include "startup/MMain.h"
#include "startup/version.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The first version whose schema is the present one.
constexpr auto presentSchema = "010140"_L1;

Recordset storedVersion(MMain& main)
{
    return main.query(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
}

} // namespace

void checkVersion(MMain& main)
{
    Recordset stored = storedVersion(main);
    if (stored.eof()) {
        main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$BASEVER', '$', '000000')"_s);
        stored = storedVersion(main);
    }
    const QString version = stored.text(0);
    if (version < presentSchema)
        throw DatabaseError(main.sqlText, u"The database is of version %1. This program takes over databases "
                                          "of version %2 and later."_s.arg(version, presentSchema));
    if (version != versionDigits())
        main.prompts.show("Update From "_L1 + version + " To "_L1 + versionDigits(), {});
    main.connection.execute("UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '"_L1 + versionDigits() +
                            "' WHERE SY_CODE = '$$BASEVER' AND SY_SUBCODE = '$'"_L1);
}

} // namespace velmora
