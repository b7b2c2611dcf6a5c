// bench_log LINES: has the log of a run's window take that many lines, a thousand between window events, and
// paint them. Prints the seconds and the bytes for each line, to keep the same texts alone and in the log,
// and the seconds to show the remarks alone, which are every tenth line, and all of them again.
#include "common/MMain.h"
#include "database.h"
#include "runs/RunLog.h"

#include <QApplication>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The bytes that the program has asked for; 0 where the system does not tell.
size_t allocated()
{
#ifdef __GLIBC__
    return mallinfo2().uordblks + mallinfo2().hblkhd;
#else
    return 0;
#endif
}

template <typename Take> void takeLines(int lines, const Take& take)
{
    const size_t before = allocated();
    timed([&] {
        for (int line = 0; line < lines; ++line)
            take(RunLine{u"%1 - Name %2 of the hall - Added"_s.arg(10000 + line).arg(line * 7919 % 100003),
                         line % 10 == 0},
                 line);
    });
    std::printf("%zu\n", (allocated() - before) / static_cast<size_t>(lines));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int lines = QCoreApplication::arguments().value(1).toInt();
    if (lines < 1) {
        std::fputs("Usage: bench_log LINES\n", stderr);
        return 2;
    }
    MMain main(u"."_s, {});
    main.connection.open(u"Provider=SQLite;Data Source=:memory:"_s);
    fill(main.connection, {});
    QList<RunLine> kept;
    takeLines(lines, [&kept](const RunLine& line, int) { kept << line; });
    RunLog log(main, u"Log"_s);
    log.resize(540, 300);
    log.show();
    QCoreApplication::processEvents();
    takeLines(lines, [&log, lines](const RunLine& line, int place) {
        log.append(line);
        if (place % 1000 == 999 || place == lines - 1)
            QCoreApplication::processEvents();
    });
    auto* onlyRemarks = log.findChild<QCheckBox*>(u"OnlyRemarks"_s);
    for (int turn = 0; turn < 2; ++turn)
        timed([onlyRemarks] {
            onlyRemarks->toggle();
            QCoreApplication::processEvents();
        });
    return 0;
}
