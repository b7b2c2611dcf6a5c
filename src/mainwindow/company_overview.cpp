#include "mainwindow/company_overview.h"

#include "common/MMain.h"

#include <numeric>

using namespace Qt::StringLiterals;

namespace velmora {

int CompanyOverview::allPhones() const
{
    return std::accumulate(phones.begin(), phones.end(), 0);
}

QList<CompanyOverview> companyOverview(MMain& main)
{
    // Counted before they are joined: once through the phones, however many companies there are.
    Recordset rows = main.connection.select(
        u"SELECT COMPANY.CO_CODE, CO_DESC, COUNTED.EQ_CODE, COUNTED.PHONE_COUNT FROM COMPANY LEFT JOIN "
        "(SELECT CO_CODE, EQ_CODE, COUNT(*) AS PHONE_COUNT FROM PHONES GROUP BY CO_CODE, EQ_CODE) COUNTED "
        "ON COUNTED.CO_CODE = COMPANY.CO_CODE ORDER BY COMPANY.CO_CODE, COUNTED.EQ_CODE"_s);
    QList<CompanyOverview> companies;
    for (; !rows.eof(); rows.moveNext()) {
        if (companies.isEmpty() || companies.last().code != rows.text(0))
            companies << CompanyOverview{rows.text(0), rows.text(1), {}};
        if (!rows.isNull(3))
            companies.last().phones[rows.text(2)] += rows.text(3).toInt();
    }
    return companies;
}

} // namespace velmora
