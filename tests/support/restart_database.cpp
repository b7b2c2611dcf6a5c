#include "support/restart_database.h"

using namespace Qt::StringLiterals;

namespace velmora {

RestartDatabase::RestartDatabase()
{
    for (const QString& model : {u"GXP2000"_s, u"PAP2"_s, u"F1000"_s}) {
        const bool isGXP2000 = model == "GXP2000"_L1;
        run(u"INSERT INTO EQUIPMENT VALUES('%1', 'model', '%2')"_s.arg(model,
                                                                       isGXP2000 ? u"GRANDSTREAM"_s : model));
        const QString ofThePhone = isGXP2000 ? u"IP4"_s : u"IP1"_s;
        const QHash<QString, QString> values = {{u"EPWD"_s, u"secret"_s},
                                                {u"IP1"_s, u"127"_s},
                                                {u"IP2"_s, u"0"_s},
                                                {u"IP3"_s, u"0"_s},
                                                {u"IP4"_s, {}}};
        for (const auto& [key, value] : values.asKeyValueRange()) {
            run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$%1', '$$%2', '%2')"_s.arg(model, key));
            addParameter(model, key, key == ofThePhone ? u"P"_s : u"E"_s, value);
        }
    }
}

void RestartDatabase::addDevice(const QString& equipment, const QString& code, int last)
{
    addPhone(u"C1"_s, equipment, code, "phone "_L1 + code, u"000000000000"_s);
    if (equipment == "NONE"_L1 || equipment == "TOASTER"_L1)
        return;
    const QString value = equipment == "GXP2000"_L1 ? u"IP4', '%1"_s : u"IP1', '127.0.0.%1"_s;
    run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', '%1', '%2', '"_s.arg(equipment, code) + value.arg(last) +
        "')"_L1);
}

} // namespace velmora
