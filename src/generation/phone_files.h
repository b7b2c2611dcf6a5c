// What phones get now: their parameters, and the bytes of their files.
#pragma once

#include "generation/run_rows.h"
#include "generation/staging.h"

#include <deque>
#include <unordered_map>

namespace velmora {

/// The pieces of one kind of file. What all phones share is made once.
class PieceMaker {
public:
    /// They stay until the next call.
    Pieces make(Piece (*piece)(const Parameter&), const QList<MergedParameter>& parameters);

private:
    std::unordered_map<const ParameterRow*, Piece> m_shared;
    std::deque<Piece> m_own;
};

/// The files of the phones of a run, which are all of one company and model.
class PhoneFiles {
public:
    /// REQUIRES: the main module has a current phone.
    PhoneFiles(MMain& main, const Levels& levels) : m_main(main), m_levels(levels), m_rows(main, levels) {}

    /// What the current phone gets; nothing where an unknown macro keeps it from getting anything. What can't
    /// be merged in memory without a doubt is merged in the staging table, which tells which rows it refuses,
    /// and why.
    std::optional<QList<MergedParameter>> parametersOf(const Phone& phone, const StagingReport& report);

    /// The file that the device loads, and its readable source copy. Throws what the writer throws.
    DeviceFile device(const Writer& writer, const Phone& phone, const QList<MergedParameter>& parameters);
    DeviceFile source(const Writer& writer, const QList<MergedParameter>& parameters);

private:
    MMain& m_main;
    const Levels m_levels;
    RunRows m_rows;
    PieceMaker m_devicePieces;
    PieceMaker m_sourcePieces;
};

} // namespace velmora
