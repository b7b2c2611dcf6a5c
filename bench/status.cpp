// bench_status PROGRAM_FOLDER OUTPUT_FOLDER: the seconds that writing the files of all phones of the sample
// database takes, comparing them where all are current and where a value of each has changed, and the most
// memory that the process held, in MiB.
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "startup/start_up.h"
#include "status/phone_status.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <sys/resource.h>

#include <cstdio>

using namespace velmora;
using namespace Qt::StringLiterals;

namespace {

double secondsOf(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// How many phones are in that state.
int compared(MMain& main, const GenerationRequest& request, FileState state)
{
    int found = 0;
    comparePhones(
        main, {request},
        [&](const PhoneStatus& status, const QList<Difference>&) { found += status.state == state ? 1 : 0; },
        [](qsizetype, qsizetype) {});
    return found;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("Usage: bench_status PROGRAM_FOLDER OUTPUT_FOLDER\n", stderr);
        return 2;
    }
    MMain main(arguments[1], terminalPrompts(std::nullopt, false));
    if (!StartUp(main, u"BENCH"_s))
        return 1;
    GenerationRequest request;
    request.company = u"ACME"_s;
    request.equipment = u"GXP2000"_s;
    request.phoneFrom = u"00001"_s;
    request.phoneTo = u"99999"_s;
    request.folder = arguments[2];

    const double writing = secondsOf([&] {
        Generate(main, request, {[](const QString&) {}, [](qsizetype, qsizetype) {}});
    });
    int current = 0;
    const double comparing = secondsOf([&] { current = compared(main, request, FileState::Current); });
    main.connection.execute(
        u"UPDATE COMPANY_PARAMETERS SET PA_VALUE = 'changed' WHERE PA_CODE = (SELECT MIN(PA_CODE) FROM "
        "COMPANY_PARAMETERS)"_s);
    int different = 0;
    const double telling = secondsOf([&] { different = compared(main, request, FileState::Different); });
    const Recordset phones = main.connection.select(u"SELECT COUNT(*) FROM PHONES"_s);
    if (current != phones.text(0).toInt() || different != current) {
        std::fprintf(stderr, "%d phones are current and %d different, not all\n", current, different);
        return 1;
    }
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.6f %.6f %.6f %ld\n", writing, comparing, telling, usage.ru_maxrss / 1024);
    return 0;
}
