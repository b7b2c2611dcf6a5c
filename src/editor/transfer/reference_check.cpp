#include "editor/transfer/reference_check.h"

#include "common/MMain.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool sameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

qsizetype placeOf(const TableDescription& table, const QString& name)
{
    return std::find_if(table.columns.begin(), table.columns.end(),
                        [&name](const TableColumn& column) { return sameName(column.name, name); }) -
           table.columns.begin();
}

} // namespace

ReferenceCheck::ReferenceCheck(MMain& main, const TableDescription& table)
{
    for (const Reference& reference : main.connection.references()) {
        if (!sameName(reference.table, table.name))
            continue;
        QList<qsizetype> places;
        for (const QString& column : reference.columns)
            places << placeOf(table, column);
        m_targets.emplace_back(reference, places);
    }
}

QString joinedValues(const QStringList& values, const QList<qsizetype>& places)
{
    QString joined;
    if (places.size() == 1)
        return values[places.front()];
    for (const qsizetype place : places) {
        // With its size no value can be taken for a part of another.
        joined += QChar(static_cast<char16_t>(values[place].size()));
        joined += values[place];
    }
    return joined;
}

/// The key that the record begins to refer to; null where it stays as it is, or refers to none.
QString ReferenceCheck::newKey(const Target& target, const QStringList& values, const QStringList& before)
{
    bool changed = before.isEmpty();
    for (const qsizetype place : target.places) {
        if (values[place].isNull())
            return {};
        changed = changed || values[place] != before[place] || before[place].isNull();
    }
    return changed ? joinedValues(values, target.places) : QString();
}

void ReferenceCheck::add(const QStringList& values, const QStringList& before)
{
    for (Target& target : m_targets) {
        const QString key = newKey(target, values, before);
        // Most records have the company and the model of the one before.
        const bool again = !target.asked.empty() && target.asked.back() && key == target.lastKey;
        if (key.isNull())
            target.asked.emplace_back();
        else if (again)
            target.asked.push_back(target.asked.back());
        else
            target.asked.emplace_back(target.keys.try_emplace(key, target.keys.size()).first->second);
        target.lastKey = key;
    }
}

void ReferenceCheck::read(MMain& main)
{
    for (Target& target : m_targets) {
        target.found.resize(target.keys.size());
        if (target.keys.empty())
            continue;
        Cursor rows = main.connection.cursor("SELECT "_L1 + target.reference.keys.join(", "_L1) +
                                             " FROM "_L1 + target.reference.target);
        QStringList key(target.places.size());
        QList<qsizetype> all(key.size());
        std::iota(all.begin(), all.end(), 0);
        while (rows.next()) {
            for (int field = 0; field < key.size(); ++field)
                key[field] = rows.text(field);
            if (const auto wanted = target.keys.find(joinedValues(key, all)); wanted != target.keys.end())
                target.found[wanted->second] = true;
        }
    }
}

QList<Reference> ReferenceCheck::missing(size_t record) const
{
    QList<Reference> missing;
    for (const Target& target : m_targets)
        if (const auto number = target.asked[record]; number && !target.found[*number])
            missing << target.reference;
    return missing;
}

} // namespace velmora
