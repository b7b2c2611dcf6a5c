// The words for what an import finds.
#pragma once

#include "editor/transfer/table_check.h"

#include <QHash>

namespace velmora {

/// Each message is looked up once, for tens of thousands of lines.
class VerdictTexts {
public:
    /// `columns` are the names of the table's columns as the user is to see them.
    VerdictTexts(MMain& main, QStringList columns) : m_main(main), m_columns(std::move(columns)) {}

    /// The note's message, "$$" in it replaced by the one thing that it is about, or "%1" and so on by
    /// several.
    QString text(const Note& note);
    /// What else is to be said about a line: what it changes, old and new, why it is refused, what to know.
    QString details(const CheckedLine& line);
    /// How many lines have which verdict.
    QString counts(const CheckedLines& lines);
    /// Which columns of the file the table does not have; an empty text where there is none.
    QString furtherColumns(const TableFile& file);

private:
    const QString& change();

    MMain& m_main;
    const QStringList m_columns;
    QHash<QString, QString> m_messages;
    QString m_change;
};

/// The values of the record's key, apart by ", "; none for a line whose values can't be told.
QString keyText(const TableDescription& table, const CheckedLine& line);

/// The text on one line of a terminal, without tabs: those, line ends and backslashes as in "\t", "\n", "\\".
QString onOneLine(const QString& text);

} // namespace velmora
