// bench_generation PROGRAM_FOLDER OUTPUT_FOLDER: writes the files of all phones of the sample database and
// prints the seconds that Generate() took, and the most memory that the process held, in MiB.
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "generation/generate.h"
#include "startup/start_up.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <sys/resource.h>

#include <cstdio>

using namespace velmora;
using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("Usage: bench_generation PROGRAM_FOLDER OUTPUT_FOLDER\n", stderr);
        return 2;
    }
    MMain mainModule(arguments[1], terminalPrompts(std::nullopt, false));
    if (!StartUp(mainModule, u"BENCH"_s))
        return 1;
    GenerationRequest request;
    request.company = u"ACME"_s;
    request.equipment = u"GXP2000"_s;
    request.phoneFrom = u"00001"_s;
    request.phoneTo = u"99999"_s;
    request.folder = arguments[2];
    const RunReport report = {[](const QString&) {}, [](qsizetype, qsizetype) {}};

    QElapsedTimer timer;
    timer.start();
    if (!Generate(mainModule, request, report))
        return 1;
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.6f %ld\n", seconds, usage.ru_maxrss / 1024);
    return 0;
}
