// What the writers of all models have in common: from a phone and its parameters to named bytes.
#pragma once

#include "common/phone.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <initializer_list>

namespace velmora {

/// Which levels of parameters a run includes.
struct Levels {
    bool phone = true;
    bool company = true;
    bool equipment = true;
};

/// A parameter as a device file shows it.
struct Parameter {
    QString code;
    QString description;
    QString value;
};

/// The names of the file that the device loads and of its readable source copy.
struct DeviceFileNames {
    QString device;
    QString source;
};

/// The bytes that a parameter takes in a file, which are the same for every phone that has it.
struct Piece {
    QString code;
    QByteArray bytes;
    /// Whether a character outside Windows-1252 was written as "?".
    bool isLossy = false;
};

/// The pieces of a file, in ascending code order.
using Pieces = QList<const Piece*>;

/// The bytes of a file, and what could not be written into it as it stood.
struct DeviceFile {
    QByteArray bytes;
    /// The codes of the parameters with characters outside Windows-1252, written as "?".
    QStringList lossyCodes;
    /// The characters of the MAC address that are no hexadecimal digits.
    QString rejectedDigits;

    void noteLoss(const Piece& piece)
    {
        if (piece.isLossy)
            lossyCodes << piece.code;
    }
};

/// The writer of one module: pure functions, no file is touched.
struct Writer {
    DeviceFileNames (*names)(const Phone& phone, const Levels& levels);
    Piece (*devicePiece)(const Parameter& parameter);
    Piece (*sourcePiece)(const Parameter& parameter);
    DeviceFile (*device)(const Phone& phone, const Pieces& pieces);
    DeviceFile (*source)(const Pieces& pieces);
};

/// The base name of a template: the model, followed by " - " and the company when company values are
/// included.
QString templateBaseName(const Phone& phone, const Levels& levels);

/// The name of a phone's source copy: code, " - ", MAC address, ".TXT".
QString sourceCopyName(const Phone& phone);

/// The piece of a parameter that stands in a file as these texts, one after the other.
Piece pieceOf(const Parameter& parameter, std::initializer_list<QStringView> texts);

/// How many bytes the pieces take.
qsizetype sizeOf(const Pieces& pieces);

/// A file of pieces one after the other.
DeviceFile joined(const Pieces& pieces);

} // namespace velmora
