// The import of a telephone server's user list into the phone book.
#pragma once

#include "phonebook/phone_book.h"

namespace velmora {

/// Brings the phone book up to the entries of "confUsers.ini" in the folder, in one transaction. New ones are
/// added with the flag V; imported ones that are met again take the name from the file; imported ones that
/// are not met become hidden, H; whatever else a user has entered or hidden stays. A line for each; an entry
/// that the database refuses is a line with its place in the file and the reason.
///
/// Problems are messages (M7, M8, M10, M16), and so is the end (M17). The main module's stop flag ends the
/// run and undoes it. True when the import went through. Throws DatabaseError and FileError; the phone book
/// is then as it was.
bool importPhoneBook(MMain& main, const PhoneBookRequest& request, const RunReport& report);

} // namespace velmora
