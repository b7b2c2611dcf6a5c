// velmora-manual DATA_FOLDER IMAGE_FOLDER OUTPUT_FOLDER: writes the manual from its templates.
// velmora-manual --markdown DATA_FOLDER OUTPUT_FOLDER: writes it in Markdown.
#include "factory/manual.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("usage: velmora-manual DATA_FOLDER IMAGE_FOLDER OUTPUT_FOLDER\n"
                   "       velmora-manual --markdown DATA_FOLDER OUTPUT_FOLDER\n",
                   stderr);
        return 2;
    }
    try {
        if (arguments[1] == QLatin1String("--markdown"))
            velmora::writeManualAsMarkdown(arguments[2], arguments[3]);
        else
            velmora::writeManual(arguments[1], arguments[2], arguments[3]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-manual: %s\n", error.what());
        return 1;
    }
}
