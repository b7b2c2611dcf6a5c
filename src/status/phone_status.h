// What lies in the folders for phones, beside what would be written now.
#pragma once

#include "common/phone.h"
#include "generation/generate.h"

namespace velmora {

/// How the file of a phone stands to what would be written now.
enum class FileState {
    Current,
    Different,
    Missing,
    Unreadable,
    /// The phone loads none.
    NoFile,
    /// No folder is known for it, or there is none of that name.
    NoFolder,
    /// A file without a phone.
    Orphan,
};

/// The state as the command line names it.
QString nameOf(FileState state);

/// A parameter that is another one in the file than now.
struct Difference {
    QString parameter;
    /// Nothing where it is absent.
    std::optional<QString> inFile;
    std::optional<QString> now;
};

struct PhoneStatus {
    /// Nothing for an orphan.
    std::optional<Phone> phone;
    /// The name of the file; empty where there is none.
    QString file;
    QString folder;
    FileState state = FileState::NoFile;
    /// How many parameters differ. There may be none though the bytes do.
    qsizetype differences = 0;
    /// What else is to be said, in the user's language: why a file can't be read, or none can be written.
    QString remark;
    /// The time of the last restart that is recorded: UTC, ISO 8601; empty where none is.
    QString lastRestart;
    /// The address of its web server, as far as its parameters tell it.
    QString address;
};

/// Takes one status after the other: the phones in the order of the requests and of their codes, then the
/// orphans in their folders. The differences come in ascending code order.
using StatusSink = std::function<void(const PhoneStatus& status, const QList<Difference>& differences)>;
using ProgressSink = std::function<void(qsizetype done, qsizetype total)>;

/// Compares the files of the requested phones with what generating them would write now. Nothing is written.
/// The main module's stop flag ends it after the current phone; whether it went through to its end. Throws
/// DatabaseError. REQUIRES: the requests are for one company.
bool comparePhones(MMain& main, const QList<GenerationRequest>& requests, const StatusSink& each,
                   const ProgressSink& progress);

/// What differs in the file of the one phone that the request selects; nothing where it can't be read. The
/// main module's phones stay as they are. Throws DatabaseError.
QList<Difference> differencesOf(MMain& main, const GenerationRequest& request);

} // namespace velmora
