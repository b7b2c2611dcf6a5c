// What the measurements of single runs share: a database of their own, and a stopwatch.
#pragma once

#include "database/connection.h"
#include "schema/tables.h"

#include <QElapsedTimer>

#include <cstdio>

/// Makes the tables and these rows, each "TABLE VALUES(...)".
inline void fill(velmora::Connection& database, const QStringList& rows)
{
    for (const QString& creation : velmora::creationStatements())
        database.executePortable(creation);
    database.holdDeclaredTypes();
    for (const QString& row : rows)
        database.execute(QLatin1String("INSERT INTO ") + row);
}

/// Runs it and prints the seconds that it took.
template <typename Work> void timed(const Work& work)
{
    QElapsedTimer time;
    time.start();
    work();
    std::printf("%f\n", double(time.nsecsElapsed()) / 1e9);
}
