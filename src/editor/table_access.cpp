#include "editor/table_access.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

TablePasswords passwordsOf(MMain& main, const QString& table)
{
    // The two rows differ in their code: the second password is itself a system row of the table.
    const QString second = main.setting("$$"_L1 + table, u"$$PWD2"_s).value_or(QString());
    return {main.setting(table, u"$$PWD"_s), second};
}

Access accessFor(const TablePasswords& passwords, const QString& entry)
{
    if (!passwords.first || entry == *passwords.first)
        return Access::True;
    return entry == passwords.second ? Access::Admin : Access::False;
}

Access askForAccess(MMain& main, const QString& table)
{
    const TablePasswords passwords = passwordsOf(main, table);
    QString entry;
    if (passwords.first)
        entry = main.prompts
                    .askPassword(main.textOr(u"PASSWORD_REQUIRED"_s, u"Password Required"_s),
                                 main.textOr(u"PASSWORD"_s, u"Password"_s))
                    .value_or(QString());
    return accessFor(passwords, entry);
}

} // namespace velmora
