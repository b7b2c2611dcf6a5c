#include "reboot/reboot.h"

#include "common/MMain.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velmora {

QString summaryOf(MMain& main, const RebootCounts& counts)
{
    return QStringList({main.messageLine(u"M214"_s, QString::number(counts.rebooted)),
                        main.messageLine(u"M215"_s, QString::number(counts.refused)),
                        main.messageLine(u"M216"_s, QString::number(counts.unreachable))})
        .join(", "_L1);
}

Reboot::Reboot(MMain& main, quint16 port, RunReport report, int budget)
    : m_main(main),
      m_report(std::move(report)),
      m_device(
          main, port,
          [this](const QString& line) {
              m_report.tell({line, true});
          },
          budget),
      m_procedures(main, m_device, m_report)
{
}

RebootCounts Reboot::run(const RebootRequest& request)
{
    m_device.allow();
    m_request = request;
    m_main.phones =
        m_main.query("SELECT * FROM PHONES WHERE CO_CODE = '"_L1 + request.company + "' AND EQ_CODE = '"_L1 +
                     request.equipment + "' AND PH_CODE BETWEEN '"_L1 + request.phoneFrom + "' AND '"_L1 +
                     request.phoneTo + "' ORDER BY PH_CODE"_L1);
    RebootCounts counts;
    counts.phones = m_main.phones.recordCount();
    for (; !m_main.phones.eof(); m_main.phones.moveNext()) {
        m_report.progress(counts.visited, counts.phones);
        const RebootOutcome outcome = visitPhone();
        ++counts.visited;
        counts.rebooted += outcome == RebootOutcome::Rebooted;
        counts.refused += outcome == RebootOutcome::Refused;
        counts.unreachable += outcome == RebootOutcome::Unreachable;
        if (m_stopFlag || m_device.isAborted())
            break;
    }
    m_report.progress(counts.visited, counts.phones);
    return counts;
}

RebootOutcome Reboot::visitPhone()
{
    const QString equipment = m_main.currentPhone().equipment;
    const Recordset modules =
        m_main.query("SELECT EQ_MODULE FROM EQUIPMENT WHERE EQ_CODE = '"_L1 + equipment + u'\'');
    if (modules.recordCount() != 1)
        return stop(u"M9"_s, equipment);
    try {
        return dispatch(modules.text(0));
    } catch (const std::invalid_argument& incomprehensible) {
        m_report.tell({m_main.messageLine(u"M213"_s, QString::fromUtf8(incomprehensible.what())), true});
        return RebootOutcome::Refused;
    }
}

RebootOutcome Reboot::dispatch(const QString& name)
{
    const Module* module = moduleOf(name);
    if (!module)
        return stop(u"M10"_s, m_main.currentPhone().equipment + " - "_L1 + name);
    return module->restart ? restart(*module->restart) : RebootOutcome::LeftOut;
}

RebootOutcome Reboot::stop(const QString& message, const QString& substitution)
{
    m_main.showMessage(message, substitution);
    m_stopFlag = true;
    return RebootOutcome::Refused;
}

RebootOutcome Reboot::restart(const Restart& restart)
{
    const auto values = valuesNamedBy(restart.addressKeys + QStringList(u"$$EPWD"_s));
    if (!values)
        return RebootOutcome::Unreachable;
    // Only here: a run that a model has stopped is not forgotten by the Reboot button.
    if (restart.forgetsStop)
        m_stopFlag = false;
    const QString address = values->first(values->size() - 1).join(u'.');
    return restart.procedure(m_procedures, address, values->last(), m_request.waitIfBusy);
}

/// The current phone's values of the parameters that the model's system rows of those keys name; nothing,
/// after a message, when a row is missing.
std::optional<QStringList> Reboot::valuesNamedBy(const QStringList& keys)
{
    QStringList parameters;
    for (const QString& key : keys) {
        const std::optional<QString> parameter = m_main.setting("$$"_L1 + m_request.equipment, key);
        if (!parameter) {
            m_main.showMessage(u"M20"_s, key);
            return std::nullopt;
        }
        parameters << *parameter;
    }
    QStringList values;
    for (const QString& parameter : parameters)
        values << m_main.GetParameterValue(parameter);
    return values;
}

} // namespace velmora
