// Reading the rows that set the parameters of the phones of a run.
#pragma once

#include "generation/merge.h"

#include <QHash>

#include <deque>

namespace velmora {

class MMain;

/// The rows for the phones of a run, which are all of one company and model. What model and company set is
/// read once, what is set for phones for many of them at once.
class RunRows {
public:
    /// REQUIRES: the main module has a current phone.
    RunRows(MMain& main, const Levels& levels);

    /// The rows of `phone`, sorted for merge(). They stay until the next call. REQUIRES: it is the current
    /// phone.
    ParameterRows of(const Phone& phone);

private:
    void readCatalogue(const Phone& phone);
    void readCompany(const Phone& phone);
    void readModels(const Phone& phone);
    void readPhones(const Phone& first);

    MMain& m_main;
    const Levels m_levels;
    /// The descriptions in the model's catalogue, by their codes.
    QHash<QString, QString> m_descriptions;
    /// What is the same for all phones.
    std::deque<ParameterRow> m_sharedRows;
    ParameterRows m_shared;
    /// All models, the phones' own one first.
    QStringList m_models;
    /// What is set for each of the phones that were read last, by their codes.
    std::deque<ParameterRow> m_phoneRows;
    QHash<QString, ParameterRows> m_ofPhones;
    /// The position of the last phone that was read.
    qsizetype m_readUpTo = 0;
};

} // namespace velmora
