// The import of a telephone server's user list into the phone book.
#pragma once

#include "phonebook/phone_book.h"

#include <optional>

namespace velmora {

/// What became of the entries of a user list, and how many of the phone book it has hidden.
struct ImportCounts {
    qsizetype added = 0;
    qsizetype updated = 0;
    qsizetype ignored = 0;
    qsizetype refused = 0;
    qsizetype hidden = 0;
};

/// Brings the phone book up to the entries of "confUsers.ini" in the folder, in one transaction. New ones are
/// added with the flag V; imported ones that are met again take the name from the file; imported ones that
/// are not met become hidden, H; whatever else a user has entered or hidden stays. A line for each, once all
/// of it is committed, and one with the counts; an entry that the database refuses is a line with its place
/// in the file and the reason, and what the book held of it stays as it was.
///
/// Problems are messages (M7, M8, M10, M16, M256), and so is the end (M17). The main module's stop flag ends
/// the run and undoes it. Nothing comes back unless the import went through. Throws DatabaseError and
/// FileError; the phone book is then as it was, and a line tells it.
std::optional<ImportCounts> importPhoneBook(MMain& main, const PhoneBookRequest& request,
                                            const RunReport& report);

} // namespace velmora
