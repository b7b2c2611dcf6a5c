// When each phone was restarted last, and with which file: one row of the database for each phone.
#pragma once

#include "common/phone.h"
#include "generation/destination.h"

#include <QHash>

namespace velmora {

/// What the row holds.
struct LastRestart {
    /// UTC, as ISO 8601 has it.
    QString time;
    /// What fingerprintOf() told of the phone's file at that time.
    QString fingerprint;
};

/// All that are recorded of the company's phones, by phone code, read by one statement. Throws DatabaseError.
QHash<QString, LastRestart> lastRestarts(MMain& main, const QString& company);

/// Records that the phone has been restarted now, in place of what was recorded. Throws DatabaseError.
void recordRestart(MMain& main, const Phone& phone, const QString& fingerprint);

/// The SHA-256 of the file, in hexadecimal; "-" where there is none that can be read.
QString fingerprintOf(const std::optional<QString>& file);

/// Where the files of phones lie, each model's folder being looked up once.
class DeviceFiles {
public:
    explicit DeviceFiles(MMain& main) : m_main(main) {}

    /// The file of the phone in its model's remembered folder; nothing where it has none. Throws
    /// DatabaseError.
    std::optional<QString> pathOf(const Phone& phone);

private:
    struct Model {
        const Writer* writer = nullptr;
        Destination destination;
    };
    const Model& modelOf(const Phone& phone);

    MMain& m_main;
    /// By company and model.
    QHash<std::pair<QString, QString>, Model> m_models;
};

} // namespace velmora
