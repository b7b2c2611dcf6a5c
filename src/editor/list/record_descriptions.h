// What the codes in a list of records stand for.
#pragma once

#include "editor/table_description.h"

#include <QHash>

#include <unordered_map>

namespace velmora {

class MMain;

/// What a code stands for.
struct CodeDescription {
    QString text;
    /// The text as it is searched.
    QString folded;
};

/// The descriptions that the pick lists of a table's columns give to the codes in its records. What a pick
/// list offers may depend on other columns; it is read once for each of their values.
class RecordDescriptions {
public:
    /// Describes nothing.
    RecordDescriptions() = default;
    explicit RecordDescriptions(TableDescription table) : m_table(std::move(table)) {}
    RecordDescriptions(RecordDescriptions&&) = default;
    RecordDescriptions& operator=(RecordDescriptions&&) = default;

    /// Reads what is still unknown about the codes of a record. A pick list that fails describes nothing.
    void learn(MMain& main, const QStringList& record);
    /// Whether the codes of that column may have descriptions.
    bool describes(int column) const;
    /// What is known about the code in that column of a record; empty texts where nothing is. Valid until
    /// something is learned.
    const CodeDescription& description(const QStringList& record, int column) const;

private:
    using Descriptions = QHash<QString, CodeDescription>;

    struct PickList {
        /// Empty for a column without descriptions.
        QString statement;
        /// The columns on which it depends.
        QList<int> columns;
        /// By their values.
        std::unordered_map<QString, Descriptions> known;
        /// The last ones that were asked for: in a sorted list the neighbours have the same.
        QStringList lastValues;
        const Descriptions* last = nullptr;
    };

    static const Descriptions* descriptionsFor(PickList& list, const QStringList& record);
    void readPickLists(MMain& main);
    void read(MMain& main, PickList& list, const QStringList& record) const;

    TableDescription m_table;
    /// One per column, once they have been read.
    QStringList m_statements;
    mutable std::vector<PickList> m_lists;
};

} // namespace velmora
