// How many records the list shows.
#pragma once

#include <QLabel>

namespace velmora {

class MMain;
class TablePane;

/// Says in the user's language how many records of the open table there are, have been read so far, or had
/// been when the reading was stopped. Empty while no table is open.
class RecordCount : public QLabel {
    Q_OBJECT

public:
    RecordCount(MMain& main, const TablePane& pane, QWidget* parent = nullptr);

private:
    void count();
    const QString& pattern() const;

    MMain& m_main;
    const TablePane& m_pane;
    /// Looked up beforehand: they are needed where no statement may fail. "$$" stands for the number.
    QString m_oneText;
    QString m_readText;
    QString m_loadingText;
    QString m_stoppedText;
    /// The same while something is searched for. "%1" stands for the number of what is found, "%2" for all.
    QString m_foundText;
    QString m_foundSoFarText;
    QString m_foundStoppedText;
};

} // namespace velmora
