// A main module over an embedded database with all tables, for tests that need no start-up.
#pragma once

#include "common/MMain.h"
#include "support/recorded_prompts.h"
#include "support/test_engine.h"

#include <QTemporaryDir>

namespace velmora {

/// The database is one of its own, opened the way the start-up does it. Besides the tables it
/// holds the levels E, C, P and D, the type T and, so that lines can be compared, the text "code: $$" for
/// every message code from M1 to M34 and M200 to M208.
class TestDatabase {
    QTemporaryDir m_folder;
    EmptyDatabase m_empty;

public:
    TestDatabase();

    RecordedPrompts user;
    MMain main;

    /// Runs a statement on the main connection.
    void run(const QString& statement) { main.connection.execute(statement); }
    /// The first field of the first row of a query; a null text where there is none.
    QString value(const QString& query);
    /// Adds a phone with its company, model and range where they are missing.
    void addPhone(const QString& company, const QString& equipment, const QString& code,
                  const QString& description, const QString& mac);
    /// Adds a parameter to a model's catalogue.
    void addParameter(const QString& equipment, const QString& code, const QString& level,
                      const QString& value, const QString& description = QStringLiteral("about"));
    /// Makes the phones of the company the shared record set.
    void selectPhones(const QString& company);
    QString connectionString() const { return m_empty.connectionString(); }
    /// A folder for output files.
    QString folder() const { return m_folder.path(); }
};

} // namespace velmora
