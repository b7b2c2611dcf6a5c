// The references of records that are not stored yet.
#pragma once

#include "database/engines/engine.h"
#include "editor/table_description.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace velmora {

class MMain;

/// The values in these places as one text, which no other values have.
QString joinedValues(const QStringList& values, const QList<qsizetype>& places);

/// Finds out which of the records that others are to refer to are missing. It is given all those others
/// first; then it reads the keys of each table that they refer to, once.
class ReferenceCheck {
public:
    ReferenceCheck(MMain& main, const TableDescription& table);

    /// Adds a record with these values, in table order. `before` is what it holds now, if it is stored
    /// already: a reference that stays as it is is not asked for.
    void add(const QStringList& values, const QStringList& before);
    /// Reads what there is of what the records refer to.
    void read(MMain& main);
    /// The references of that record, counted from 0, that lead to none. REQUIRES: read() was called.
    QList<Reference> missing(size_t record) const;

private:
    struct Target {
        Target(Reference given, QList<qsizetype> itsPlaces)
            : reference(std::move(given)), places(std::move(itsPlaces))
        {
        }

        Reference reference;
        QList<qsizetype> places;
        /// The keys that are asked for, each with its number, and whether it is there.
        std::unordered_map<QString, size_t> keys;
        std::vector<bool> found;
        /// For each record the number of its key; nothing where it asks for none.
        std::vector<std::optional<size_t>> asked;
        QString lastKey;
    };

    static QString newKey(const Target& target, const QStringList& values, const QStringList& before);

    std::vector<Target> m_targets;
};

} // namespace velmora
