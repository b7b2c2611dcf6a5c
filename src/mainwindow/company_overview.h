// How many phones of each model the companies have.
#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace velmora {

class MMain;

struct CompanyOverview {
    QString code;
    QString name;
    /// The number of phones by the code of their model; phones without a model under an empty code.
    QHash<QString, int> phones;

    int allPhones() const;
};

/// All companies, by code, also those without phones. One statement.
QList<CompanyOverview> companyOverview(MMain& main);

} // namespace velmora
