#include "status/explain.h"

#include "common/MMain.h"
#include "files/ansi.h"
#include "generation/destination.h"
#include "generation/phone_files.h"
#include "generation/remembered_levels.h"
#include "modules/GXP2000.h"
#include "modules/PAP2.h"
#include "status/allowed_values.h"

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What the model's catalogue says about a parameter.
struct CatalogueEntry {
    QString description;
    QString level;
    QString type;
    QString allowed;
};

QMap<QString, CatalogueEntry> catalogueOf(MMain& main, const QString& model)
{
    QMap<QString, CatalogueEntry> catalogue;
    Cursor rows = main.connection.cursor(
        u"SELECT PA_CODE, PA_DESC, LE_CODE, TY_CODE, PA_VALUES FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = ?"_s,
        {model});
    while (rows.next())
        catalogue.insert(rows.text(0), {rows.text(1), rows.text(2), rows.text(3), rows.text(4)});
    return catalogue;
}

ValueSource sourceOf(const ParameterRow& row)
{
    return row.level == u'E'   ? ValueSource::Default
           : row.level == u'C' ? ValueSource::Company
                               : ValueSource::Phone;
}

/// The characters that keep a value from being read back as it stands from a file of the module.
QString separatorsOf(const Module* module)
{
    const Writer* writer = module ? module->writer : nullptr;
    return writer == &GXP2000 ? u"&"_s : writer == &PAP2 ? u"<&"_s : QString();
}

/// The characters of `value` that a file of the module can't hold, each once.
QStringList charactersThatDoNotFit(const QString& value, const Module* module)
{
    const QString separators = separatorsOf(module);
    QStringList found;
    for (qsizetype place = 0; place < value.size(); ++place) {
        const qsizetype size = value[place].isHighSurrogate() && place + 1 < value.size() ? 2 : 1;
        const QStringView character = QStringView(value).mid(place, size);
        if (character == u'\r' || character == u'\n')
            found << (character == u'\r' ? u"\\r"_s : u"\\n"_s);
        else if (!fitsAnsi(character) || (size == 1 && separators.contains(character)))
            found << character.toString();
        place += size - 1;
    }
    found.removeDuplicates();
    return found;
}

QString asWritten(const QString& value)
{
    QByteArray bytes;
    appendAnsi(bytes, value);
    return decodeAnsi(bytes);
}

/// What the row becomes for the phone, as far as its macro can be expanded.
QString expandedValue(const ParameterRow& row, const Phone& phone)
{
    const MacroReplacement replacement = macroReplacement(row.macro, phone);
    const QString& value = row.parameter.value;
    return row.macro.isEmpty() || !replacement.text ? value
                                                    : QString(value).replace(row.macro, *replacement.text);
}

bool isIncluded(const ParameterRow& row, const Levels& levels)
{
    return row.level == u'E' ? levels.equipment : row.level == u'C' ? levels.company : levels.phone;
}

/// The parameters by their codes; nothing where an unknown macro keeps the phone from getting any.
std::optional<QHash<QString, QString>> writtenValues(MMain& main, const Phone& phone, const Levels& levels)
{
    PhoneFiles files(main, levels); // holds the rows of the parameters
    const auto parameters = files.parametersOf(phone, {[](const QString&) {}, [](const MacroExpansion&) {}});
    if (!parameters)
        return std::nullopt;
    QHash<QString, QString> values;
    for (const MergedParameter& one : *parameters)
        values.insert(one.parameter().code, one.parameter().value);
    return values;
}

/// The explanation of the parameters of one phone.
class Explanation {
public:
    /// REQUIRES: `phone` is the current phone.
    Explanation(MMain& main, const Phone& phone)
        : m_main(main),
          m_phone(phone),
          m_levels(rememberedLevels(main, phone.company, phone.equipment)),
          m_module(moduleOfModel(main, phone.equipment)),
          m_catalogue(catalogueOf(main, phone.equipment)),
          m_rows(main, {}),
          m_written(writtenValues(main, phone, m_levels))
    {
        for (const ParameterRow* row : m_rows.of(phone))
            m_candidates[row->parameter.code] << row;
    }

    QList<ExplainedParameter> all() const
    {
        QStringList codes = m_catalogue.keys() + m_candidates.keys();
        std::sort(codes.begin(), codes.end(), hasSmallerCode);
        codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
        QList<ExplainedParameter> explained;
        for (const QString& code : codes)
            explained << one(code);
        return explained;
    }

private:
    ExplainedParameter one(const QString& code) const
    {
        const CatalogueEntry entry = m_catalogue.value(code);
        ExplainedParameter parameter;
        parameter.code = code;
        parameter.description = entry.description;
        parameter.level = entry.level;
        const ParameterRow* row = rowOf(code);
        if (row) {
            parameter.source = sourceOf(*row);
            parameter.model = row->otherModel.isEmpty() ? m_phone.equipment : row->otherModel;
            parameter.stored = row->parameter.value;
            if (m_written)
                parameter.value = asWritten(m_written->value(code));
            parameter.remarks = remarksAbout(*row, entry);
        }
        for (const ParameterRow* other : m_candidates.value(code))
            if (other != row)
                parameter.remarks << remarkAboutUnused(*other);
        return parameter;
    }

    /// The row that gives the parameter its value: of those that could, the first one with that value.
    const ParameterRow* rowOf(const QString& code) const
    {
        if (m_written && !m_written->contains(code))
            return nullptr;
        for (const ParameterRow* row : m_candidates.value(code))
            if (isIncluded(*row, m_levels) &&
                (!m_written || expandedValue(*row, m_phone) == m_written->value(code)))
                return row;
        return nullptr;
    }

    QStringList remarksAbout(const ParameterRow& row, const CatalogueEntry& entry) const
    {
        QStringList remarks;
        if (!row.macro.isEmpty() && !macroReplacement(row.macro, m_phone).text)
            remarks << m_main.messageLine(u"M6"_s, row.macro);
        const QString value = expandedValue(row, m_phone);
        if (!isOfType(value, entry.type))
            remarks << m_main.messageLine(u"M379"_s);
        else if (!isAllowed(value, entry.allowed))
            remarks << m_main.messageLine(u"M378"_s, entry.allowed);
        if (const QStringList misfits = charactersThatDoNotFit(value, m_module); !misfits.isEmpty())
            remarks << m_main.messageLine(u"M410"_s, misfits.join(u' '));
        return remarks;
    }

    QString remarkAboutUnused(const ParameterRow& row) const
    {
        const QString& value = row.parameter.value;
        if (!isIncluded(row, m_levels))
            return m_main.messageLine(u"M377"_s, value);
        if (!row.otherModel.isEmpty())
            return m_main.messageLine(u"M376"_s, row.otherModel + " - "_L1 + value);
        return m_main.messageLine(row.level == u'P' ? u"M375"_s : u"M374"_s, value);
    }

    MMain& m_main;
    const Phone m_phone;
    const Levels m_levels;
    const Module* m_module;
    const QMap<QString, CatalogueEntry> m_catalogue;
    RunRows m_rows;
    /// What would stand in the file.
    const std::optional<QHash<QString, QString>> m_written;
    /// All rows that set each parameter, in the order in which they are considered.
    QMap<QString, ParameterRows> m_candidates;
};

} // namespace

QString nameOf(ValueSource source)
{
    switch (source) {
    case ValueSource::Default:
        return u"default"_s;
    case ValueSource::Company:
        return u"company"_s;
    case ValueSource::Phone:
        return u"phone"_s;
    case ValueSource::Absent:
        return u"absent"_s;
    }
    return {};
}

QList<ExplainedParameter> explain(MMain& main, const Phone& phone)
{
    const Recordset before = main.phones;
    const auto restore = qScopeGuard([&] { main.phones = before; });
    main.phones = main.connection.select(u"SELECT * FROM PHONES WHERE CO_CODE = ? AND PH_CODE = ?"_s,
                                         {phone.company, phone.code});
    return main.phones.eof() ? QList<ExplainedParameter>() : Explanation(main, main.currentPhone()).all();
}

} // namespace velmora
