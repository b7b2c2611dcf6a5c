#include "generation/phone_files.h"

#include "common/MMain.h"

namespace velmora {

Pieces PieceMaker::make(Piece (*piece)(const Parameter&), const QList<MergedParameter>& parameters)
{
    Pieces pieces;
    pieces.reserve(parameters.size());
    m_own.clear();
    for (const MergedParameter& one : parameters) {
        if (!one.isShared())
            pieces << &m_own.emplace_back(piece(one.parameter()));
        else if (const auto known = m_shared.find(one.row); known != m_shared.end())
            pieces << &known->second;
        else
            pieces << &m_shared.emplace(one.row, piece(one.parameter())).first->second;
    }
    return pieces;
}

std::optional<QList<MergedParameter>> PhoneFiles::parametersOf(const Phone& phone,
                                                               const StagingReport& report)
{
    Merge merged = merge(m_rows.of(phone), phone);
    if (merged.doubtful.isEmpty())
        return std::move(merged.parameters);
    return mergeInTable(m_main, m_levels, report);
}

DeviceFile PhoneFiles::device(const Writer& writer, const Phone& phone,
                              const QList<MergedParameter>& parameters)
{
    return writer.device(phone, m_devicePieces.make(writer.devicePiece, parameters));
}

DeviceFile PhoneFiles::source(const Writer& writer, const QList<MergedParameter>& parameters)
{
    return writer.source(m_sourcePieces.make(writer.sourcePiece, parameters));
}

} // namespace velmora
