// Staging the parameters of the phones of a run in the table EQ_TEMP.
#pragma once

#include "modules/writer.h"
#include "runs/run_report.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace velmora {

class MMain;

/// Merges the parameters of the phones of a run, one after the other, in the staging table. The phones are
/// all of one company and model. The table is emptied for the first phone and when this object ends.
///
/// What is the same for every phone stays staged from one phone to the next: the leading levels in which no
/// macro stands and no row is refused. Only the levels after them are staged anew.
class Staging {
public:
    Staging(MMain& main, const Levels& levels);
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    /// Stages what the current phone gets and returns it in ascending code order: the model's level-E
    /// parameters with their defaults, then what the company sets for the model, then what is set for the
    /// phone.
    ///
    /// A parameter that is staged already keeps its first value, and `line` is told its code (M200), or,
    /// where the phone's own model has a value and another model has one too, whose value does not count
    /// (M266). One that the database refuses for another reason is left out, and `line` is told (M201).
    /// Macros are expanded; an unknown one sets the stop flag, and nothing comes back after the level that
    /// holds it.
    std::optional<QList<Parameter>> merge(const LineSink& line);

private:
    void stageShared();
    void findMovedPhones();

    MMain& m_main;
    const Levels m_levels;
    bool m_started = false;
    /// The codes of the levels that stay staged, and the parameters in them.
    QStringList m_sharedLevels;
    QList<Parameter> m_shared;
    /// The codes of the phones that have values of other models than their own.
    QSet<QString> m_moved;
};

} // namespace velmora
