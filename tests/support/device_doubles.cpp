// velmora-device-doubles: devices that are none, for rehearsing restarts without hardware. Reads lines "MODEL
// ADDRESS PASSWORD" up to the end of its input, listens at all these addresses on one free port, tells it in
// its first line of output, then tells every request. Runs until it is ended.
#include "support/device_double.h"

#include <QCoreApplication>
#include <QTextStream>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace velmora;

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream in(stdin);
    QTextStream out(stdout);
    std::vector<std::unique_ptr<DeviceDouble>> devices;
    while (!in.atEnd()) {
        const QStringList words = in.readLine().split(u' ', Qt::SkipEmptyParts);
        if (words.size() != 3)
            continue;
        const quint16 port = devices.empty() ? quint16{0} : devices.front()->port();
        devices.push_back(
            std::make_unique<DeviceDouble>(deviceOf(words[0], words[2].toLatin1()), words[1], port));
        if (!devices.back()->isListening()) {
            QTextStream(stderr) << "can't listen at " << words[1] << '\n';
            return 1;
        }
        QObject::connect(devices.back().get(), &DeviceDouble::requested, &application,
                         [&out, words](const QByteArray& received) {
                             out << words[0] << ' ' << words[1] << ": "
                                 << received.left(received.indexOf(" HTTP/")) << Qt::endl;
                         });
    }
    if (devices.empty())
        return 2;
    out << devices.front()->port() << Qt::endl;
    return QCoreApplication::exec();
}
