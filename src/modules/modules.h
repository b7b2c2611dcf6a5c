// The modules: what Velmora can do for the phones of a model. This is the one place that names all of it.
#pragma once

#include "modules/reader.h"
#include "modules/reboot_procedures.h"
#include "modules/writer.h"

#include <optional>

namespace velmora {

/// How the phones of a module are restarted.
struct Restart {
    /// The sub-codes of the model's system rows that name the parameters with the device's address, whose
    /// values are joined with ".".
    QStringList addressKeys;
    QCoro::Task<RebootOutcome> (*procedure)(const RebootProcedures& procedures, const QString& address,
                                            const QString& password, bool waitIfBusy);
    /// Whether such a phone makes a run go on that a model without a module had stopped.
    bool forgetsStop = false;
};

/// One value of EQ_MODULE.
struct Module {
    QString name;
    /// Null for phones that load no file.
    const Writer* writer;
    /// Reads what the writer writes; null where there is none.
    Reader reader;
    /// Nothing for phones that are not restarted through their web servers.
    std::optional<Restart> restart;
};

/// Every module. Each has a "$$MODULES" row, from which EQ_MODULE is chosen.
const QList<Module>& modules();

/// The module of that name; null where there is none.
const Module* moduleOf(const QString& name);

} // namespace velmora
