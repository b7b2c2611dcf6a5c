#include "generation/run_rows.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Enough for a server not to be waited for much, and little to hold.
constexpr int phonesAtOnce = 100;

} // namespace

RunRows::RunRows(MMain& main, const Levels& levels) : m_main(main), m_levels(levels)
{
    const Phone phone = main.currentPhone();
    readModel(phone);
    if (levels.company)
        readCompany(phone);
    for (const ParameterRow& row : m_sharedRows)
        m_shared << &row;
    sortForMerge(m_shared);
}

ParameterRows RunRows::ofCurrentPhone()
{
    if (!m_levels.phone)
        return m_shared;
    const Phone phone = m_main.currentPhone();
    if (m_main.phones.absolutePosition() > m_readUpTo)
        readPhones(phone);
    return inOneList(m_shared, m_ofPhones.value(phone.code));
}

void RunRows::readModel(const Phone& phone)
{
    Cursor rows = m_main.connection.cursor(
        u"SELECT PA_CODE, PA_DESC, PA_DEFAULT, LE_CODE FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = ?"_s,
        {phone.equipment});
    while (rows.next()) {
        m_descriptions[rows.text(0)] = rows.text(1);
        if (m_levels.equipment && rows.text(3) == "E"_L1)
            m_sharedRows.emplace_back(u'E', Parameter{rows.text(0), rows.text(1), rows.text(2)});
    }
}

void RunRows::readCompany(const Phone& phone)
{
    Cursor rows = m_main.connection.cursor(
        u"SELECT PA_CODE, PA_VALUE FROM COMPANY_PARAMETERS WHERE CO_CODE = ? AND EQ_CODE = ?"_s,
        {phone.company, phone.equipment});
    while (rows.next())
        m_sharedRows.emplace_back(u'C',
                                  Parameter{rows.text(0), m_descriptions.value(rows.text(0)), rows.text(1)});
}

void RunRows::readPhones(const Phone& first)
{
    m_phoneRows.clear();
    m_ofPhones.clear();
    QString last;
    Recordset ahead = m_main.phones;
    for (int phone = 0; phone < phonesAtOnce && !ahead.eof(); ++phone, ahead.moveNext()) {
        last = ahead.text("PH_CODE"_L1);
        m_readUpTo = ahead.absolutePosition();
    }
    // Naming models and phones lets the primary key find the rows.
    Cursor rows = m_main.connection.cursor(
        u"SELECT PH_CODE, PA_CODE, PA_VALUE, NULLIF(EQ_CODE, ?) FROM PHONES_PARAMETERS WHERE CO_CODE = ? AND "
        u"EQ_CODE IN "
        "(SELECT EQ_CODE FROM EQUIPMENT) AND PH_CODE IN (SELECT PH_CODE FROM PHONES WHERE CO_CODE = ? AND "
        "EQ_CODE = ? AND PH_CODE BETWEEN ? AND ?)"_s,
        {first.equipment, first.company, first.company, first.equipment, first.code, last});
    while (rows.next()) {
        const QString code = rows.text(1);
        m_phoneRows.emplace_back(u'P', Parameter{code, m_descriptions.value(code), rows.text(2)},
                                 rows.text(3));
        m_ofPhones[rows.text(0)] << &m_phoneRows.back();
    }
    for (ParameterRows& ofPhone : m_ofPhones)
        sortForMerge(ofPhone);
}

} // namespace velmora
