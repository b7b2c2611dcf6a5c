#include "generation/run_rows.h"

#include "common/MMain.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Enough for a server not to be waited for much, and little to hold.
constexpr int phonesAtOnce = 100;

/// One "?" for each of the values.
QString marks(const QStringList& values)
{
    return u'(' + QStringList(values.size(), u"?"_s).join(u',') + u')';
}

} // namespace

RunRows::RunRows(MMain& main, const Levels& levels) : m_main(main), m_levels(levels)
{
    const Phone phone = main.currentPhone();
    readCatalogue(phone);
    if (levels.company)
        readCompany(phone);
    if (levels.phone)
        readModels(phone);
    for (const ParameterRow& row : m_sharedRows)
        m_shared << &row;
    sortForMerge(m_shared);
}

ParameterRows RunRows::of(const Phone& phone)
{
    if (!m_levels.phone)
        return m_shared;
    if (m_main.phones.absolutePosition() > m_readUpTo)
        readPhones(phone);
    return inOneList(m_shared, m_ofPhones.value(phone.code));
}

void RunRows::readCatalogue(const Phone& phone)
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

void RunRows::readModels(const Phone& phone)
{
    m_models = {phone.equipment};
    Cursor rows =
        m_main.connection.cursor(u"SELECT EQ_CODE FROM EQUIPMENT WHERE EQ_CODE <> ?"_s, {phone.equipment});
    while (rows.next())
        m_models << rows.text(0);
}

void RunRows::readPhones(const Phone& first)
{
    m_phoneRows.clear();
    m_ofPhones.clear();
    QStringList phones;
    for (Recordset ahead = m_main.phones; !ahead.eof() && phones.size() < phonesAtOnce; ahead.moveNext()) {
        phones << ahead.text("PH_CODE"_L1);
        m_readUpTo = ahead.absolutePosition();
    }
    // What is set under other models counts as well. Naming models and phones lets the primary key find the
    // rows: neither engine would use all of it for a range or a query in their place.
    Cursor rows = m_main.connection.cursor(
        "SELECT PH_CODE, PA_CODE, PA_VALUE, NULLIF(EQ_CODE, ?) FROM PHONES_PARAMETERS WHERE CO_CODE = ? AND "
        "EQ_CODE IN "_L1 +
            marks(m_models) + " AND PH_CODE IN "_L1 + marks(phones),
        QStringList{first.equipment, first.company} + m_models + phones);
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
