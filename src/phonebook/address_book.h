// The address book that the GXP2000 phones load.
#pragma once

#include "phonebook/phone_book.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace velmora {

/// The name of the file that the phones look for.
inline const QString addressBookName = QStringLiteral("gs_phonebook.xml");

struct AddressBookEntry {
    QString number;
    QString name;
};

/// The file's bytes in Windows-1252, one element per line, without any escaping. A character outside it
/// becomes "?".
QByteArray addressBook(const QList<AddressBookEntry>& entries);

/// Writes the company's entries that are not hidden, sorted by name, into the address book in the folder. A
/// line for each. The main module's stop flag ends the run; an older file stays then. Problems are messages
/// (M7, M8, M10). True when the file was written. Throws DatabaseError and FileError.
bool generatePhoneBook(MMain& main, const PhoneBookRequest& request, const RunReport& report);

} // namespace velmora
