#include "startup/upgrade.h"

#include "common/MMain.h"
#include "database/schema_lock.h"
#include "database/transaction.h"
#include "schema/upgrade_steps.h"
#include "schema/version.h"

#include <algorithm>
#include <optional>

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

/// Keeps a copy of the database as it is before a step, and tells where, or that there is none.
QString keepCopy(MMain& main, const QString& version)
{
    const QString copy = main.connection.keepCopy(version);
    if (!copy.isEmpty())
        return "The database as it was is kept in "_L1 + copy;
    return u"No copy of a database on a server is kept here. To have one, make it with mariadb-dump, as the "
           "manual says, before the new version is started."_s;
}

/// Runs the statements of a step and stamps the database.
void takeStep(MMain& main, const QStringList& statements)
{
    Transaction step(main.connection);
    for (const QString& statement : statements) {
        main.sqlText = statement;
        main.connection.executeStep(statement);
    }
    main.connection.execute("UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '"_L1 + versionDigits() +
                            "' WHERE SY_CODE = '$$BASEVER' AND SY_SUBCODE = '$'"_L1);
    step.commit();
}

} // namespace

QString anotherStartText()
{
    return u"Another start is creating or updating this database --> WAIT, THEN RUN PROGRAM AGAIN"_s;
}

bool upgrade(MMain& main)
{
    const QString version = storedVersion(main);
    const bool needsStep = !missingStatements(version).isEmpty();
    if (version != versionDigits())
        main.prompts.show("Update From "_L1 + version + " To "_L1 + versionDigits(),
                          needsStep ? keepCopy(main, version) : QString());
    std::optional<SchemaLock> lock;
    if (needsStep && !lock.emplace(main.connection).isHeld()) {
        main.prompts.show(anotherStartText(), {});
        return false;
    }
    // Asked again: another start may have taken the step meanwhile.
    takeStep(main, needsStep ? missingStatements(storedVersion(main)) : QStringList());
    return true;
}

} // namespace velmora
