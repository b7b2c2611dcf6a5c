#include "startup/upgrade.h"

#include "database/transaction.h"
#include "schema/upgrade_steps.h"
#include "startup/MMain.h"
#include "startup/version.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

Recordset queryVersion(MMain& main)
{
    return main.query(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
}

/// The version that the database records; one that never recorded any gets "000000".
QString storedVersion(MMain& main)
{
    Recordset stored = queryVersion(main);
    if (stored.eof()) {
        main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$BASEVER', '$', '000000')"_s);
        stored = queryVersion(main);
    }
    return stored.text(0);
}

/// The statements that a database of that version lacks first; none when its schema is the present one.
QStringList missingStatements(const QString& version)
{
    const auto step = std::find_if(upgradeSteps().begin(), upgradeSteps().end(),
                                   [&version](const UpgradeStep& each) { return version < each.bound; });
    return step == upgradeSteps().end() ? QStringList() : step->statements;
}

void tellAbout(MMain& main, const QString& version, const QString& copy)
{
    main.prompts.show("Update From "_L1 + version + " To "_L1 + versionDigits(),
                      copy.isEmpty() ? QString() : "The database as it was is kept in "_L1 + copy);
}

} // namespace

void upgrade(MMain& main)
{
    const QString version = storedVersion(main);
    const QStringList statements = missingStatements(version);
    if (version != versionDigits())
        tellAbout(main, version, statements.isEmpty() ? QString() : main.connection.keepCopy(version));

    Transaction step(main.connection);
    for (const QString& statement : statements) {
        main.sqlText = statement;
        main.connection.executePortable(statement);
    }
    main.connection.execute("UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '"_L1 + versionDigits() +
                            "' WHERE SY_CODE = '$$BASEVER' AND SY_SUBCODE = '$'"_L1);
    step.commit();
}

} // namespace velmora
