// velmora-device-doubles: devices that are none, for rehearsing restarts without hardware. Reads lines "MODEL
// ADDRESS PASSWORD" up to the end of its input, listens at all these addresses on one free port, tells it in
// its first line of output, then tells every request. Runs until it is ended.
//
// What else stands on a line makes the device another one: "down=MS" is down for so long after a restart,
// "never-up" for good; "busy=N" is busy for its first N probes (GXP2000); "slow=MS" takes so long over each
// answer; "silent" says nothing; at "refusing" nobody listens.
#include "support/device_double.h"

#include "platform/open_files.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTextStream>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The number behind the `name`, "=" and a number among the words; nothing without it.
std::optional<int> numberOf(const QStringList& words, const QString& name)
{
    const QStringList found = words.filter(QRegularExpression(u'^' + name + "=\\d+$"_L1));
    return found.isEmpty() ? std::nullopt : std::optional(found.first().section(u'=', 1).toInt());
}

DeviceBehaviour behaviourOf(const QStringList& words)
{
    if (words.contains("silent"_L1))
        return silentDevice();
    const QByteArray password = words[2].toLatin1();
    const std::optional<int> busy = numberOf(words, u"busy"_s);
    const DeviceBehaviour device = busy ? gxp2000Device(password, *busy) : deviceOf(words[0], password);
    const std::optional<int> slow = numberOf(words, u"slow"_s);
    return slow ? slowly(device, *slow) : device;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    allowManyOpenFiles();
    QTextStream in(stdin);
    QTextStream out(stdout);
    std::vector<std::unique_ptr<DeviceDouble>> devices;
    while (!in.atEnd()) {
        const QStringList words = in.readLine().split(u' ', Qt::SkipEmptyParts);
        if (words.size() < 3 || words.contains("refusing"_L1))
            continue;
        const quint16 port = devices.empty() ? quint16{0} : devices.front()->port();
        devices.push_back(std::make_unique<DeviceDouble>(behaviourOf(words), words[1], port));
        if (!devices.back()->isListening()) {
            QTextStream(stderr) << "can't listen at " << words[1] << '\n';
            return 1;
        }
        const std::optional<int> down = numberOf(words, u"down"_s);
        if (down || words.contains("never-up"_L1))
            devices.back()->restartsFor(down);
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
