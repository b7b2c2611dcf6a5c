// Reading device files back; the bytes of the golden files are an independent program's.
#include "files/ansi.h"
#include "files/whole_file.h"
#include "modules/modules.h"
#include "support/rows.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <deque>

using namespace Qt::StringLiterals;

namespace velmora {

class tst_readers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void golden();
    void randomSets();
    void bytes_data();
    void bytes();
    void mutations();
};

namespace {

QByteArray goldenFile(const QString& name)
{
    return readWholeFile(QStringLiteral(VELMORA_SOURCE "/tests/generation/golden/") + name);
}

QList<const Module*> readableModules()
{
    QList<const Module*> readable;
    for (const Module& module : modules())
        if (module.reader)
            readable << &module;
    return readable;
}

QByteArray goldenFileOf(const Module& module)
{
    return goldenFile((module.name == "GRANDSTREAM"_L1 ? u"gxp2000"_s : module.name.toLower()) +
                      ".device"_L1);
}

/// The device file of these values.
QByteArray written(const Writer& writer, const Phone& phone, const QMap<QString, QString>& values)
{
    std::deque<Piece> made;
    Pieces pieces;
    for (const auto& [code, value] : values.asKeyValueRange())
        pieces << &made.emplace_back(writer.devicePiece({code, {}, value}));
    return writer.device(phone, pieces).bytes;
}

QMap<QString, QString> valuesIn(const FileContents& file)
{
    QMap<QString, QString> values;
    for (const FileParameter& each : file.parameters)
        values[decodeAnsi(each.code.toByteArray())] = decodeAnsi(each.value.toByteArray());
    return values;
}

QString randomText(QRandomGenerator& random, const QString& characters, int longest)
{
    QString text;
    for (int left = random.bounded(longest + 1); left > 0; --left)
        text += characters[random.bounded(characters.size())];
    return text;
}

/// The image with its length and checksum made right by another way than the writer's.
QByteArray image(const QByteArray& text)
{
    QByteArray bytes = QByteArray(16, '\0') + text + (text.size() % 2 ? QByteArray(1, '\0') : QByteArray());
    bytes.replace(12, 4, "\r\n\r\n");
    bytes[3] = static_cast<char>(bytes.size() / 2);
    unsigned sum = 0;
    for (qsizetype byte = 0; byte < bytes.size(); ++byte)
        sum += static_cast<quint8>(bytes[byte]) * (byte % 2 ? 1U : 256U);
    const unsigned missing = (65536 - sum % 65536) % 65536;
    bytes[4] = static_cast<char>(missing / 256);
    bytes[5] = static_cast<char>(missing % 256);
    return bytes;
}

} // namespace

/// The parameters with values outside Windows-1252 come back with "?".
void tst_readers::golden()
{
    QMap<QString, QString> expected;
    for (const QString& line : QString::fromUtf8(goldenFile(u"parameters.tsv"_s)).split(u'\n'))
        if (!line.isEmpty())
            expected[line.section(u'\t', 0, 0)] = line.section(u'\t', 2);
    for (const Module* module : readableModules()) {
        const QByteArray bytes = goldenFileOf(*module);
        const FileContents file = module->reader(bytes);
        QVERIFY2(!file.failure, qPrintable(module->name));
        QCOMPARE(valuesIn(file).keys(), expected.keys());
        for (const auto& [code, value] : expected.asKeyValueRange())
            if (!value.contains(QRegularExpression(u"[^\\x{0}-\\x{FF}€]"_s)))
                QCOMPARE(valuesIn(file).value(code), value);
    }
}

/// Values with all that a format does not use between parameters: "&" is read back too, unless "P…=" follows.
void tst_readers::randomSets()
{
    QRandomGenerator random(20261123);
    const Phone phone{u"ACME"_s, u"MODEL"_s, u"101"_s, u"Ann"_s, u"0D0A0D0A0D0A"_s};
    for (int set = 0; set < 1000; ++set) {
        QMap<QString, QString> values;
        for (int left = random.bounded(40); left >= 0; --left)
            values[u'A' + randomText(random, u"0123456789_aé"_s, 8)] =
                randomText(random, u"abP01&<>/ €ÿ\t;\"'=\r"_s, 12).replace("&P"_L1, "&Q"_L1);
        for (const Module* module : readableModules()) {
            const QByteArray bytes = written(*module->writer, phone, values);
            const FileContents file = module->reader(bytes);
            QVERIFY2(!file.failure, qPrintable(module->name));
            QCOMPARE(valuesIn(file), values);
        }
    }
}

void tst_readers::bytes_data()
{
    // read: the parameters as "code=value", joined with "|"; or why there are none
    columns<QString, QByteArray, QString>("module", "bytes", "read");
    const QString image_ = u"GRANDSTREAM"_s;
    row("image", image_, image("P2=b&P1=a&gnkey=7c3e"_ba), "1=a|2=b");
    row("image, ampersands", image_, image("P2=&&x&P1=a&b=c&gnkey=7c3e"_ba), "1=a&b=c|2=&&x");
    row("image, ambiguous", image_, image("P2=a&P3=b&P1=&gnkey=7c3e"_ba), "1=|2=a|3=b");
    row("image, no key", image_, image("P2=b&P1=a"_ba), "foreign");
    row("image, no parameter", image_, image("x&gnkey=7c3e"_ba), "foreign");
    row("image, more behind", image_, image("P2=b&gnkey=7c3e  "_ba), "foreign");
    row("image, one byte less", image_, image("P2=b&P1=a&gnkey=7c3e"_ba).chopped(1), "cut off");
    row("image, one byte more", image_, image("P2=b&P1=a&gnkey=7c3e"_ba) + 'x', "cut off");
    row("image, one byte another", image_, image("P2=b&P1=a&gnkey=7c3e"_ba).replace("=b", "=c"), "checksum");
    row("image, header only", image_, image({}).first(15), "foreign");
    row("profile", "PAP2", "<flat-profile>\r\n<b></b>\r\n<a>1</a>\r\n2</a>\r\n</flat-profile>\r\n"_ba,
        "a=1</a>\r\n2|b=");
    row("profile, nothing in it", "PAP2", "<flat-profile>\r\n</flat-profile>\r\n"_ba, "");
    row("profile, cut off", "PAP2", "<flat-profile>\r\n<b>1</b>\r\n</flat-prof"_ba, "cut off");
    row("profile, start only", "PAP2", "<flat-profile>\r\n"_ba, "cut off");
    row("profile, not closed", "PAP2", "<flat-profile>\r\n<b>1</c>\r\n</flat-profile>\r\n"_ba, "foreign");
    row("profile, comments", "PAP2", "<flat-profile>\r\n<!-- b -->\r\n<b>1</b>\r\n</flat-profile>\r\n"_ba,
        "foreign");
    row("profile, no code", "PAP2", "<flat-profile>\r\n<>1</>\r\n</flat-profile>\r\n"_ba, "foreign");
    row("page", "PAP2", "<html>\r\n"_ba, "foreign");
    row("lines", "F1000", "b=2=3\r\na=\r\n"_ba, "a=|b=2=3");
    row("lines, one broken", "F1000", "a=1\r\n2\r\nb=3\r\n"_ba, "a=1\r\n2|b=3");
    row("lines, cut off", "F1000", "a=1\r\nb=2"_ba, "cut off");
    row("lines, none", "F1000", ""_ba, "foreign");
    row("lines, no code", "F1000", "=1\r\n"_ba, "foreign");
    row("lines, a text", "F1000", "Hello\r\n"_ba, "foreign");
    row("lines, binary", "F1000", QByteArray("a=\0\r\n", 5), "foreign");
}

void tst_readers::bytes()
{
    QFETCH(QString, module);
    QFETCH(QByteArray, bytes);
    const FileContents file = moduleOf(module)->reader(bytes);
    QStringList read;
    const QMap<QString, QString> values = valuesIn(file);
    for (const auto& [code, value] : values.asKeyValueRange())
        read << code + u'=' + value;
    const QStringList reasons = {u"foreign"_s, u"cut off"_s, u"checksum"_s};
    QTEST(file.failure ? reasons[static_cast<int>(*file.failure)] : read.join(u'|'), "read");
}

/// Any bytes are read or refused; with VELMORA_FUZZ_SECONDS for that long per module.
void tst_readers::mutations()
{
    const qint64 time = qEnvironmentVariableIntValue("VELMORA_FUZZ_SECONDS") * qint64{1000};
    QRandomGenerator random(1);
    for (const Module* module : readableModules()) {
        const QByteArray whole = goldenFileOf(*module);
        QElapsedTimer elapsed;
        elapsed.start();
        for (int round = 0; round < 2000 || elapsed.elapsed() < time; ++round) {
            QByteArray bytes = whole;
            for (int left = random.bounded(4); left >= 0 && !bytes.isEmpty(); --left) {
                const qsizetype at = random.bounded(bytes.size());
                const qsizetype size = random.bounded(qMin<qsizetype>(64, bytes.size() - at) + 1);
                switch (random.bounded(4)) {
                case 0:
                    bytes[at] = static_cast<char>(random.bounded(256));
                    break;
                case 1:
                    bytes.remove(at, size);
                    break;
                case 2:
                    bytes.insert(random.bounded(bytes.size()), bytes.sliced(at, size));
                    break;
                default:
                    bytes.truncate(at);
                }
            }
            const FileContents file = module->reader(bytes);
            QVERIFY(!file.failure || file.parameters.isEmpty());
        }
    }
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_readers)
#include "tst_readers.moc"
