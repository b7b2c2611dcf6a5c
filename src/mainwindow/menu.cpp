#include "mainwindow/menu.h"

#include "common/MMain.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

const QList<MenuItem>& menuItems()
{
    static const QList<MenuItem> items = {
        {u"Files"_s, u"Files"_s, {}},
        {u"Quit"_s, u"Quit"_s, u"Files"_s},
        {u"Config"_s, u"Configure"_s, {}},
        {u"Generate"_s, u"Generate"_s, {}},
        {u"GenConf"_s, u"Parameters Files"_s, u"Generate"_s},
        {u"GenStatus"_s, u"Status of Phones"_s, u"Generate"_s},
        {u"PhoneBook"_s, u"Phone Book"_s, {}},
        {u"PbGen"_s, u"Generate"_s, u"PhoneBook"_s},
        {u"PbImp"_s, u"Import"_s, u"PhoneBook"_s},
        {u"PbExp"_s, u"Export"_s, u"PhoneBook"_s},
        {u"Ranges"_s, u"Ranges"_s, {}},
        {u"Reboot"_s, u"Reboot"_s, {}},
        {u"Help"_s, u"Help"_s, {}},
        {u"Help1"_s, u"Help"_s, u"Help"_s},
        {u"About"_s, u"About"_s, u"Help"_s},
    };
    return items;
}

bool hasMenuRight(MMain& main, const QString& control)
{
    const QString rights =
        u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHM' AND SY_SUBCODE = '"_s;
    const QStringList queries = {
        rights + "*'"_L1,
        rights + control + "'"_L1,
        rights + main.userName + "' AND SY_VALUE = '*'"_L1,
        rights + main.userName + "' AND SY_VALUE = '"_L1 + control + "'"_L1,
    };
    return std::any_of(queries.begin(), queries.end(),
                       [&main](const QString& statement) { return !main.query(statement).eof(); });
}

bool canReachMenuItem(MMain& main, const QString& control)
{
    const auto item = std::find_if(menuItems().begin(), menuItems().end(),
                                   [&control](const MenuItem& each) { return each.control == control; });
    return hasMenuRight(main, control) && (item->parent.isEmpty() || canReachMenuItem(main, item->parent));
}

} // namespace velmora
