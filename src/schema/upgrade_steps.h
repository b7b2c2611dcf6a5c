// The changes of the schema between versions, as statements.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velmora {

/// What brings a database of a version before `bound` closer to the present schema.
struct UpgradeStep {
    QString bound;
    QStringList statements;
};

/// Every step, in the order in which their bounds are looked at.
const QList<UpgradeStep>& upgradeSteps();

} // namespace velmora
