// bench_startup PROGRAM_FOLDER: runs StartUp() on that folder and prints the seconds that it took.
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "startup/start_up.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

using namespace velmora;
using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("Usage: bench_startup PROGRAM_FOLDER\n", stderr);
        return 2;
    }
    QElapsedTimer timer;
    timer.start();
    MMain mainModule(arguments[1], terminalPrompts(std::nullopt, false));
    // A start-up that creates the database ends the program: whether it did its work shows in the database.
    StartUp(mainModule, u"BENCH"_s);
    mainModule.connection.close();
    std::printf("%.6f\n", static_cast<double>(timer.nsecsElapsed()) / 1e9);
    return 0;
}
