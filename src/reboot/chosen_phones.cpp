#include "reboot/chosen_phones.h"

#include "common/MMain.h"
#include "reboot/last_restart.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Those of the phones whose file is another one than at their last restart.
QSet<QString> changedPhones(MMain& main, const QString& company, const QList<Phone>& phones)
{
    const QHash<QString, LastRestart> restarts = lastRestarts(main, company);
    DeviceFiles files(main);
    QSet<QString> changed;
    for (const Phone& phone : phones) {
        const auto last = restarts.constFind(phone.code);
        if (last == restarts.cend() || last->fingerprint != fingerprintOf(files.pathOf(phone)))
            changed << phone.code;
    }
    return changed;
}

QList<Phone> phonesIn(Recordset rows)
{
    QList<Phone> phones;
    for (; !rows.eof(); rows.moveNext())
        phones << phoneOf(rows);
    return phones;
}

} // namespace

ChosenPhones chosenPhones(MMain& main, const RebootRequest& request)
{
    const QString ofModel =
        request.equipment.isEmpty() ? QString() : "AND EQ_CODE = '"_L1 + request.equipment + "' "_L1;
    ChosenPhones chosen;
    chosen.rows = main.query("SELECT * FROM PHONES WHERE CO_CODE = '"_L1 + request.company + "' "_L1 +
                             ofModel + "AND PH_CODE BETWEEN '"_L1 + request.phoneFrom + "' AND '"_L1 +
                             request.phoneTo + "' ORDER BY PH_CODE"_L1);
    if (!request.codes && !request.changedOnly)
        return chosen;
    QList<Phone> phones = phonesIn(chosen.rows);
    if (request.codes) {
        QSet<QString> named(request.codes->cbegin(), request.codes->cend());
        phones.removeIf([&named](const Phone& phone) { return !named.remove(phone.code); });
        chosen.missing = *request.codes;
        chosen.missing.removeIf([&named](const QString& code) { return !named.contains(code); });
    }
    if (request.changedOnly) {
        chosen.codes = changedPhones(main, request.company, phones);
        return chosen;
    }
    chosen.codes.emplace();
    for (const Phone& phone : phones)
        *chosen.codes << phone.code;
    return chosen;
}

} // namespace velmora
