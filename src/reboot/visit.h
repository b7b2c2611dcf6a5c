// What has to be known of a phone before it is visited.
#pragma once

#include "common/MMain.h"
#include "modules/modules.h"

#include <variant>

namespace velmora {

/// A phone that can be visited.
struct Visit {
    Phone phone;
    QString module;
    const Restart* restart = nullptr;
    QString address;
    /// Whether every part of the address has a value.
    bool hasAddress = true;
    QString password;
};

/// A phone that can't, and what that counts as.
struct NoVisit {
    RebootOutcome outcome;
    /// Whether no further phone is to be visited either.
    bool stopsRun = false;
};

/// The values of all phones of the company that hold addresses or passwords, as answers to the lookups of
/// visits: read by one statement, where one for each value goes through all values of the company. Throws
/// DatabaseError.
MMain::Answers answersForVisits(MMain& main, const QString& company);

/// Looks up what a visit of the current phone needs; the rows of `model` name the parameters. What is missing
/// is a shown message (M9, M10, M20, M1 to M6). Throws DatabaseError.
std::variant<Visit, NoVisit> planVisit(MMain& main, const QString& model);

} // namespace velmora
