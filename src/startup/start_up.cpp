#include "startup/start_up.h"

#include "common/MMain.h"
#include "files/file_error.h"
#include "files/unfinished_file.h"
#include "schema/tables.h"
#include "startup/database_creation.h"
#include "startup/param_db.h"
#include "startup/seed_file.h"
#include "startup/upgrade.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool openDatabase(MMain& main, const QString& connectionString)
{
    try {
        main.connection.open(connectionString, OpenMode::ReadWrite, main.programFolder);
        main.connection.holdDeclaredTypes();
        return true;
    } catch (const DatabaseError& error) {
        main.prompts.show("Open Database Failed : "_L1 + withoutPasswords(connectionString),
                          error.description());
        return false;
    }
}

/// Reads the language. False when the database is still to be created.
bool readLanguage(MMain& main)
{
    bool isSet = false;
    try {
        const Recordset setting =
            main.query(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$LNG'"_s);
        isSet = !setting.eof();
        main.language = isSet ? setting.text(0) : u"EN"_s;
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::ConnectionLost)
            throw;
        // A database that holds other tables is not ours to fill, and one that is only busy is not empty.
        if (!awaitsCreation(main.connection))
            throw;
        return false;
    }
    return isSet || !awaitsCreation(main.connection);
}

/// Staging takes place in a table of this session's own: no lock, and nothing that a crash leaves behind.
void makeStagingPrivate(MMain& main)
{
    main.connection.prepareSessions(
        [](Connection& connection) { connection.executePortable(privateStagingStatement()); });
}

/// Lets a superuser act as another user.
void chooseUser(MMain& main)
{
    const Recordset superuser = main.query("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = "
                                           "'$$SUPERUSER' AND SY_SUBCODE = '"_L1 +
                                           main.userName + "'"_L1);
    if (superuser.eof())
        return;
    const QString answer =
        main.prompts.askText(main.messageLine(u"M34"_s), main.userName).value_or(QString()).toUpper();
    if (!answer.isEmpty())
        main.userName = answer;
}

bool startUp(MMain& main, const QString& systemUserName)
{
    main.userName = systemUserName.toUpper();
    removeLeftovers(main.programFolder);
    const ParamDB paramDB = readParamDB(main.programFolder);
    if (!openDatabase(main, paramDB.working))
        return false;
    if (!readLanguage(main)) {
        if (!createDatabase(main, paramDB.original))
            return false;
        main.connection.holdDeclaredTypes();
        readLanguage(main);
    }
    makeStagingPrivate(main);
    chooseUser(main);
    if (!upgrade(main))
        return false;
    loadSeedFile(main);
    return true;
}

} // namespace

bool StartUp(MMain& main, const QString& systemUserName)
{
    // A start that ends in an error leaves no empty database: its name may be a slip of the pen.
    auto leaveNothing = qScopeGuard([&main] { main.connection.closeUnused(); });
    try {
        const bool goOn = startUp(main, systemUserName);
        if (goOn)
            leaveNothing.dismiss();
        return goOn;
    } catch (const DatabaseError& error) {
        main.prompts.show("Velmora can't start: "_L1 + error.description(), error.statement());
    } catch (const FileError& error) {
        main.prompts.show("Velmora can't start: "_L1 + error.path() + ": "_L1 + error.description(), {});
    }
    return false;
}

} // namespace velmora
