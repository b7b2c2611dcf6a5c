#include "reboot/visit.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Stands for a part of a password.
const QString masked = u"***"_s;

/// The parameters that the model's system rows of those keys name; nothing, after a message, when a row is
/// missing.
std::optional<QStringList> parametersNamedBy(MMain& main, const QString& model, const QStringList& keys)
{
    QStringList parameters;
    for (const QString& key : keys) {
        const std::optional<QString> parameter = main.setting("$$"_L1 + model, key);
        if (!parameter) {
            main.showMessage(u"M20"_s, key);
            return std::nullopt;
        }
        parameters << *parameter;
    }
    return parameters;
}

NoVisit stopAt(MMain& main, const QString& message, const QString& substitution)
{
    main.showMessage(message, substitution);
    return {RebootOutcome::Refused, true};
}

} // namespace

MMain::Answers answersForVisits(MMain& main, const QString& company)
{
    // Of a phone that has values under two models, the lookups find the first.
    Cursor values = main.connection.cursor(
        u"SELECT PH_CODE, PA_CODE, PA_VALUE FROM PHONES_PARAMETERS WHERE CO_CODE = ? AND PA_CODE IN (SELECT "
        "SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE IN ('$$IP1', '$$IP2', '$$IP3', '$$IP4', '$$EPWD')) "
        "ORDER BY EQ_CODE"_s,
        {company});
    MMain::Answers answers;
    while (values.next()) {
        const QString lookup = MMain::phoneValueStatement(company, values.text(0), values.text(1));
        if (!answers.contains(lookup))
            answers.insert(lookup, Recordset(u"PA_VALUE"_s, values.text(2)));
    }
    return answers;
}

std::variant<Visit, NoVisit> planVisit(MMain& main, const QString& model)
{
    const Phone phone = main.currentPhone();
    const Recordset modules =
        main.query("SELECT EQ_MODULE FROM EQUIPMENT WHERE EQ_CODE = '"_L1 + phone.equipment + u'\'');
    if (modules.recordCount() != 1)
        return stopAt(main, u"M9"_s, phone.equipment);
    const Module* module = moduleOf(modules.text(0));
    if (!module)
        return stopAt(main, u"M10"_s, phone.equipment + " - "_L1 + modules.text(0));
    if (!module->restart)
        return NoVisit{RebootOutcome::LeftOut};
    const auto parameters =
        parametersNamedBy(main, model, module->restart->addressKeys + QStringList(u"$$EPWD"_s));
    if (!parameters)
        return NoVisit{RebootOutcome::Unreachable};
    QStringList address;
    for (const QString& parameter : parameters->first(parameters->size() - 1))
        address << main.GetParameterValue(parameter);
    const QString password = main.GetParameterValue(parameters->last(), masked);
    return Visit{phone,   module->name, &*module->restart, address.join(u'.'), !address.contains(QString()),
                 password};
}

} // namespace velmora
