// The image at its edges; tst_generate compares the files of all writers.
#include "modules/GXP2000.h"
#include "support/rows.h"

using namespace Qt::StringLiterals;

namespace velmora {

class tst_writers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void image_data();
    void image();
    void imageSize();
    void hexDec_data();
    void hexDec();
};

namespace {

DeviceFile image(const QString& mac, const QList<Parameter>& parameters)
{
    QList<Piece> pieces;
    for (const Parameter& parameter : parameters)
        pieces << GXP2000.devicePiece(parameter);
    Pieces all;
    for (const Piece& piece : pieces)
        all << &piece;
    return GXP2000.device({u"ACME"_s, u"MODEL"_s, u"101"_s, u"Ann"_s, mac}, all);
}

quint32 sumOfWords(const QByteArray& bytes)
{
    quint32 sum = 0;
    for (qsizetype byte = 0; byte < bytes.size(); ++byte)
        sum += static_cast<quint8>(bytes[byte]) * (byte % 2 == 0 ? 256U : 1U);
    return sum % 65536;
}

} // namespace

void tst_writers::image_data()
{
    // parameters: "code=value", joined with blanks
    // address: in hexadecimal digits
    // text: without the key and the last byte
    columns<QString, QString, QString, QByteArray, bool, QString>("mac", "parameters", "address", "text",
                                                                  "padded", "rejected");
    row("odd length", "000B82010203", "1=a", "000b82010203", "P1=a"_ba, true, "");
    row("even length", "000b82fedcba", "1=a 10=c 2=b", "000b82fedcba", "P2=b&P10=c&P1=a"_ba, false, "");
    row("colons", "00:0B:82:01:", "1=a 2=b", "0000b0820010", "P2=b&P1=a"_ba, false, "::::");
    // Only a parameter that starts beyond byte 16 is preceded by "&".
    row("14 digits", "000B8201020304", "1=a 2=b", "000b8201020304", "&P2=b&P1=a"_ba, false, "");
    row("11 digits", "000B820102F", "1=a 2=b", "000b8201020f", "P2=b&P1=a"_ba, false, "");
    row("no address", "", "1=a 10=c 2=b", "", "P2=bP10=c&P1=a"_ba, true, "");
}

void tst_writers::image()
{
    QFETCH(QString, mac);
    QFETCH(QString, parameters);
    QFETCH(QString, address);
    QFETCH(QByteArray, text);
    QFETCH(bool, padded);
    QList<Parameter> list;
    for (const QString& parameter : parameters.split(u' '))
        list << Parameter{parameter.section(u'=', 0, 0), u"about"_s, parameter.section(u'=', 1)};
    const DeviceFile file = velmora::image(mac, list);
    QCOMPARE(file.bytes.sliced(6), QByteArray::fromHex(address.toLatin1()) + "\r\n\r\n" + text +
                                       "&gnkey=7c3e" + (padded ? "\0"_ba : QByteArray()));
    QCOMPARE(file.bytes.first(4).toHex().toInt(nullptr, 16), file.bytes.size() / 2);
    QCOMPARE(sumOfWords(file.bytes), 0U);
    QCOMPARE(file.bytes.size() % 2, 0);
    QTEST(file.rejectedDigits, "rejected");
}

/// The value stands between 19 bytes of header and code and 11 bytes of key.
void tst_writers::imageSize()
{
    const auto image = [](qsizetype valueSize) {
        return velmora::image(u"FFFFFFFFFFFF"_s, {{u"1"_s, {}, QString(valueSize, u'~')}}).bytes;
    };
    for (const qsizetype fitting : {32737, 32738}) {
        QCOMPARE(image(fitting).size(), 32768);
        QCOMPARE(image(fitting).first(4).toHex(), "00004000"_ba);
        QCOMPARE(sumOfWords(image(fitting)), 0U);
    }
    QVERIFY_THROWS_EXCEPTION(ImageTooLarge, image(32739));
}

void tst_writers::hexDec_data()
{
    // value: -1 where the text is too large
    columns<QString, int, QString>("text", "value", "rejected");
    row("both cases", "aF", 175, "");
    row("seven digits", "FFFFFFF", 268435455, "");
    row("eight digits", "00000000", -1, "");
    row("letter after F", "g", 0, "g");
    row("colon last", "b:", 176, ":");
    // A rejected character takes the product before it: 15 + 15 * 16 + 15 * 16 * 256 + 15 * 16 * 256 * 4096.
    row("products", ":::f", 251719935, ":::");
    row("product too large", "::::f", -1, "");
}

void tst_writers::hexDec()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    QString reported;
    const auto decode = [&] { return HexDec(text, [&](QChar character) { reported += character; }); };
    if (value < 0) {
        QVERIFY_THROWS_EXCEPTION(std::overflow_error, decode());
        return;
    }
    QCOMPARE(decode(), value);
    QTEST(reported, "rejected");
}

} // namespace velmora

QTEST_GUILESS_MAIN(velmora::tst_writers)
#include "tst_writers.moc"
