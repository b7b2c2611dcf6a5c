// What the writers of all models have in common: from a phone and its parameters to named bytes.
#pragma once

#include "common/phone.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

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

/// The bytes of a file, and what could not be written into it as it stood.
struct DeviceFile {
    QByteArray bytes;
    /// The codes of the parameters with characters outside Windows-1252, written as "?".
    QStringList lossyCodes;
    /// The characters of the MAC address that are no hexadecimal digits.
    QString rejectedDigits;
};

/// The writer of one module: pure functions, no file is touched. Parameters come in ascending code order.
struct Writer {
    DeviceFileNames (*names)(const Phone& phone, const Levels& levels);
    DeviceFile (*device)(const Phone& phone, const QList<Parameter>& parameters);
    DeviceFile (*source)(const QList<Parameter>& parameters);
};

/// The base name of a template: the model, followed by " - " and the company when company values are
/// included.
QString templateBaseName(const Phone& phone, const Levels& levels);

/// The name of a phone's source copy: code, " - ", MAC address, ".TXT".
QString sourceCopyName(const Phone& phone);

/// Appends one piece of a parameter, noting its code in `file` when a character was lost.
void appendPiece(DeviceFile& file, const QString& code, QStringView text);

} // namespace velmora
