// The lines of an import and their verdicts, as a list shows them.
#pragma once

#include "editor/transfer/verdict_texts.h"

#include <QAbstractTableModel>

namespace velmora {

/// Number, verdict, key and details of each line. The words are made for what is looked at.
class VerdictModel : public QAbstractTableModel {
    Q_OBJECT

public:
    VerdictModel(MMain& main, const TableDescription& table, QObject* parent);

    void reset(CheckedLines lines);
    /// Shows the refused lines alone, or all.
    void showOnlyRefused(bool only);
    const CheckedLines& lines() const { return m_lines; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void choose();
    QString text(const CheckedLine& line, int column) const;

    const TableDescription m_table;
    mutable VerdictTexts m_texts;
    QStringList m_captions;
    QStringList m_verdicts;
    CheckedLines m_lines;
    /// Those of the lines that are shown.
    std::vector<size_t> m_shown;
    bool m_onlyRefused = false;
};

} // namespace velmora
