#include "phonebook/phone_book.h"

#include "common/MMain.h"
#include "files/stored_path.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

Recordset phonesOfBook(MMain& main, const QString& company, const QString& equipment)
{
    const QString model = equipment.isEmpty() ? QString() : "AND EQ_CODE = '"_L1 + equipment + "' "_L1;
    return main.query("SELECT * FROM PHONES WHERE CO_CODE = '"_L1 + company + "' "_L1 + model +
                      "ORDER BY PH_CODE"_L1);
}

} // namespace

bool hasPhones(MMain& main, const QString& company, const QString& equipment)
{
    const bool found = !phonesOfBook(main, company, equipment).eof();
    if (!found)
        main.showMessage(u"M8"_s);
    return found;
}

bool openPhones(MMain& main, const PhoneBookRequest& request)
{
    const QString folder = localFolder(request.folder);
    if (folder.isEmpty() || !QDir(folder).exists()) {
        main.showMessage(u"M7"_s, request.folder);
        return false;
    }
    main.phones = phonesOfBook(main, request.company, request.equipment);
    if (main.phones.eof())
        main.showMessage(u"M8"_s);
    return !main.phones.eof();
}

bool loadsPhoneBooks(MMain& main)
{
    const QString equipment = main.currentPhone().equipment;
    const bool loads = equipment == "GXP2000"_L1;
    if (!loads)
        main.showMessage(u"M10"_s, equipment);
    return loads;
}

} // namespace velmora
