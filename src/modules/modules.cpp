#include "modules/modules.h"

#include "modules/F1000.h"
#include "modules/GXP2000.h"
#include "modules/PAP2.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

const QList<Module>& modules()
{
    static const QList<Module> all = {
        {u"GRANDSTREAM"_s, &GXP2000, &readGXP2000,
         Restart{{u"$$IP1"_s, u"$$IP2"_s, u"$$IP3"_s, u"$$IP4"_s},
                 [](const RebootProcedures& procedures, const QString& address, const QString& password,
                    bool waitIfBusy) { return procedures.RebootGXP2000(address, password, waitIfBusy); }}},
        {u"PAP2"_s, &PAP2, &readPAP2,
         Restart{{u"$$IP1"_s},
                 [](const RebootProcedures& procedures, const QString& address, const QString& password,
                    bool) { return procedures.RebootPAP2(address, password); },
                 true}},
        {u"F1000"_s, &F1000, &readF1000,
         Restart{{u"$$IP1"_s},
                 [](const RebootProcedures& procedures, const QString& address, const QString& password,
                    bool) { return procedures.RebootF1000(address, password); }}},
        {u"NONE"_s, nullptr, nullptr, std::nullopt},
    };
    return all;
}

const Module* moduleOf(const QString& name)
{
    const auto found = std::find_if(modules().begin(), modules().end(),
                                    [&name](const Module& module) { return module.name == name; });
    return found == modules().end() ? nullptr : &*found;
}

} // namespace velmora
