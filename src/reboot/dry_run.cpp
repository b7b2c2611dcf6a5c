#include "reboot/dry_run.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Planned {
    Phone phone;
    QString address;
    QString procedure = u"-"_s;
    QStringList remarks = {};
};

/// The phone and what would be done with it.
Planned planned(MMain& main, const Phone& phone, const std::variant<Visit, NoVisit>& plan)
{
    if (const auto* visit = std::get_if<Visit>(&plan)) {
        Planned found{phone, visit->address, visit->module};
        if (!visit->hasAddress)
            found.remarks << main.messageLine(u"M390"_s);
        return found;
    }
    Planned none{phone, {}};
    if (std::get<NoVisit>(plan).outcome == RebootOutcome::Unreachable)
        none.remarks << main.messageLine(u"M390"_s);
    return none;
}

/// Names to each phone the first other one that has its address.
void markSharedAddresses(MMain& main, QList<Planned>& phones)
{
    QHash<QString, QStringList> codes;
    for (const Planned& each : phones)
        if (!each.address.isEmpty())
            codes[each.address] << each.phone.code;
    for (Planned& each : phones) {
        QStringList others = codes.value(each.address);
        others.removeAll(each.phone.code);
        if (!others.isEmpty())
            each.remarks << main.messageLine(u"M391"_s, others.first());
    }
}

} // namespace

PlanCounts planReboot(MMain& main, const RebootRequest& request, const RunReport& report)
{
    const ChosenPhones chosen = chosenPhones(main, request);
    PlanCounts counts{chosen.count(), chosen.missing.size(), chosen.missing.size()};
    for (const QString& code : chosen.missing)
        report.tell({main.messageLine(u"M389"_s, code), true});
    QList<Planned> phones;
    bool goesOn = true;
    for (main.phones = chosen.rows; goesOn && !main.phones.eof(); main.phones.moveNext()) {
        const Phone phone = main.currentPhone();
        if (!chosen.contains(phone.code))
            continue;
        const auto plan = planVisit(main, request.equipment.isEmpty() ? phone.equipment : request.equipment);
        phones << planned(main, phone, plan);
        const auto* none = std::get_if<NoVisit>(&plan);
        goesOn = !none || !none->stopsRun;
    }
    counts.withRemarks += goesOn ? 0 : 1;
    markSharedAddresses(main, phones);
    for (const Planned& each : phones) {
        counts.withRemarks += each.remarks.isEmpty() ? 0 : 1;
        report.tell({QStringList({each.phone.code, each.address, each.phone.equipment, each.procedure,
                                  each.remarks.join("; "_L1)})
                         .join(u'\t'),
                     !each.remarks.isEmpty()});
    }
    return counts;
}

} // namespace velmora
