// velmora-factory DATA_FOLDER DATABASE: writes the factory database from the data files.
#include "database/database_error.h"
#include "factory/factory_database.h"
#include "files/file_error.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: velmora-factory DATA_FOLDER DATABASE\n", stderr);
        return 2;
    }
    try {
        velmora::writeFactoryDatabase(arguments[2], velmora::readFactoryData(arguments[1]));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-factory: %s\n", error.what());
        QFile::remove(arguments[2]); // half a database would look like one that is up to date
        return 1;
    }
}
