#include "cli/status_output.h"

#include "common/MMain.h"
#include "status/status_lines.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

namespace velmora {

ExitStatus printStatus(MMain& main, const QList<GenerationRequest>& requests, bool withDetails)
{
    QTextStream out(stdout);
    bool isDone = tellCodesWithoutPhone(main, requests);
    qsizetype lines = 0;
    const auto print = [&](const PhoneStatus& status, const QList<Difference>& differences) {
        ++lines;
        isDone = isDone && (status.state == FileState::Current || status.state == FileState::NoFile);
        out << lineOf(status) << '\n';
        if (withDetails)
            for (const Difference& difference : differences)
                out << lineOf(difference) << '\n';
        if (!status.remark.isEmpty())
            QTextStream(stderr) << status.phone->code << ": " << status.remark << '\n';
    };
    comparePhones(main, requests, print, [](qsizetype, qsizetype) {});
    if (lines == 0)
        main.showMessage(u"M8"_s);
    return isDone && lines > 0 ? Done : EndedWithMessage;
}

bool tellCodesWithoutPhone(MMain& main, const QList<GenerationRequest>& requests)
{
    const QStringList codes = codesWithoutPhone(main, requests);
    for (const QString& code : codes)
        main.showMessage(u"M389"_s, code);
    return codes.isEmpty();
}

} // namespace velmora
