// What phones are told and what they answer, as texts: digests, encodings, replies good and bad.
#include "http/CMD5.h"
#include "http/base64.h"
#include "http/hash_string.h"
#include "modules/reboot_requests.h"
#include "support/rows.h"

#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QTest>

#include <functional>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// What `read` gives, or what it can't read.
QString orFailure(const std::function<QString()>& read)
{
    try {
        return read();
    } catch (const std::invalid_argument& failure) {
        return "fails: "_L1 + QString::fromUtf8(failure.what());
    }
}

/// What is read out of a reply for the next request.
QString valuesIn(const QString& reply)
{
    QStringList values;
    if (const auto cookie = cookieOf(reply))
        values << u"cookie"_s << *cookie;
    if (const auto digest = digestChallengeOf(reply)) {
        digestAuthorization(*digest, {});
        values << u"digest"_s
               << QStringList({digest->realm, digest->nonce, digest->opaque, digest->qop}).join(u'|');
        if (digest->stale)
            values << u"stale"_s;
    }
    return values.join(u' ');
}

} // namespace

class tst_device_texts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void transformsTexts_data();
    void transformsTexts();
    void findsTheEnd_data();
    void findsTheEnd();
    void readsValues_data();
    void readsValues();
    void readsMutilatedReplies();
};

void tst_device_texts::transformsTexts_data()
{
    using Transformation = std::function<QString(const QString&)>;
    columns<Transformation, QString, QString>("transformation", "text", "result");
    const Transformation md5 = [](const QString& text) { return CMD5().MD5(text); };
    // Padding goes wrong around the ends of blocks; the library's MD5 is the judge.
    for (const int length : {0, 55, 56, 64, 120})
        row(qPrintable(u"MD5, %1"_s.arg(length)), md5, QString(length, u'x'),
            QString::fromLatin1(
                QCryptographicHash::hash(QByteArray(length, 'x'), QCryptographicHash::Md5).toHex()));
    row("MD5, the low 8 bits of each character", md5, u"\u0161\u20ac\u00e9"_s,
        QString::fromLatin1(QCryptographicHash::hash("\x61\xac\xe9", QCryptographicHash::Md5).toHex()));
    const Transformation base64 = Encode64;
    row("Base64, empty", base64, "", "=");
    row("Base64, 1 byte", base64, "f", "Zg==");
    row("Base64, 4", base64, "foob", "Zm9vYg=");
    row("Base64, 40 digits", base64, QString(30, u'x'), "eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\r\n");
    row("Base64, 42 digits", base64, QString(31, u'y'), "eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5eXl5\r\neQ=");
    row("Base64, Windows-1252", base64, u"\u20ac\u00ff?"_s, "gP8/");
    const Transformation decoded = [](QString text) {
        const QString bytes = Decode64(text);
        return bytes + u' ' + text;
    };
    row("Base64 back, overwriting its text", decoded, "Z m9\r\nv-YmFy==", "foobar foobarv-YmFy==");
    row("Base64 back, cut off", decoded, "gP8/Y", u"\u20ac\u00ff? \u20ac\u00ff?/Y"_s);
    const Transformation basicLines = [](const QString& password) {
        return QString::number(adminPageRequest({}, password).count("\r\n"_L1));
    };
    row("long credentials go out broken", basicLines, QString(27, u'x'), "9");
    // Worked out with Python's unbounded integers.
    const Transformation hash = hash_string;
    row("hash, a sentence", hash, "The quick brown fox", "079F7C18");
    row("hash, the highest bytes", hash, QString(20, QChar(0xff)), "06DB76AD");
    const Transformation nonce = [](const QString& text) { return RecVal(u"nonce"_s, text); };
    row("a quoted value, the first one", nonce, "NONCE=\"y\" cnonce=\"x\", nonce=\"abc\"", "x");
    row("a quoted value, missing: the tail's first", nonce, "1234567 = \"abc\"", "7 = ");
    row("a quoted value, missing, and no quote", nonce, "1234567 = abc", "fails: nonce");
    row("a quoted value, too short a text", nonce, "ab", "fails: nonce");
}

void tst_device_texts::transformsTexts()
{
    QFETCH(std::function<QString(const QString&)>, transformation);
    QFETCH(QString, text);
    QTEST(orFailure([&] { return transformation(text); }), "result");
}

void tst_device_texts::findsTheEnd_data()
{
    columns<QByteArray, bool, QByteArray>("reply", "whole", "text");
    const auto reply = [](const char* title, const QByteArray& headers, const QByteArray& body, bool whole,
                          const QByteArray& kept) {
        const QByteArray head = "HTTP/1.1 200 OK\r\n" + headers + "\r\n";
        row(title, head + body, whole, head + kept);
    };
    reply("the end of the page", "", "<p></html>", true, "<p></html>");
    reply("a length, and more than that", "content-LENGTH:4\r\n", "page, more", true, "page");
    reply("not all of its length", "Content-Length: 5\r\n", "page", false, "page");
    reply("no body", "Content-Length: 0\r\n", "", true, "");
    reply("a length twice", "Content-Length: 4, 4\r\n", "page", true, "page");
    reply("two lengths", "Content-Length: 4\r\nContent-Length: 3\r\n", "page", false, "page");
    reply("a length beyond all numbers", "Content-Length: 99999999999999999999\r\n", "page", false, "page");
    const QByteArray chunked = "Content-Length: 1\r\nTransfer-Encoding: gzip, Chunked\r\n";
    reply("chunks", chunked, "3;x=y\r\ndev\r\n3\r\nice\r\n0\r\nTrailer: x\r\n\r\n", true, "device");
    reply("the last chunk's lines not all there", chunked, "3\r\ndev\r\n0\r\n", false, "dev");
    reply("the end of the page in two chunks", chunked, "4\r\n</ht\r\n3\r\nml>\r\n", true, "</html>");
    reply("a chunk beyond all numbers", chunked, "ffffffffffffffff\r\npage", false, "page");
    reply("a chunk without end of its size", chunked, QByteArray(2 << 20, '1'), false, "");
    reply("a page without the chunks", chunked, "<p></html>", true, "<p></html>");
    reply("a coding without end", "Transfer-Encoding: gzip\r\nContent-Length: 4\r\n", "page", false, "page");
    const QByteArray empty = "HTTP/1.1 204 No\r\n\r\n";
    row("no body by its status", empty, true, empty);
    row("an interim answer, and line ends left over",
        QByteArray("\r\nHTTP/1.1 100 Go on\r\n\r\nHTTP/1.1 304 No\n\n"), true,
        QByteArray("HTTP/1.1 304 No\n\n"));
    const QByteArray strange = "page\r\nContent-Length: 0\r\n\r\n";
    row("no answer as it should be", strange, false, strange);
    const QByteArray endless = "HTTP/1.0 200 OK\r\nX: " + QByteArray(3 << 20, 'x');
    row("a head without end", endless, false, endless.first(HttpReply::longest));
    row("the end beyond what is kept", endless + "\r\n\r\n</html>", true, endless.first(HttpReply::longest));
}

void tst_device_texts::findsTheEnd()
{
    QFETCH(QByteArray, reply);
    QFETCH(bool, whole);
    QFETCH(QByteArray, text);
    for (const qsizetype step : {reply.size(), qsizetype(1)}) {
        HttpReply read;
        for (qsizetype place = 0; place < reply.size(); place += step)
            read.append(QByteArrayView(reply).sliced(place, step));
        QCOMPARE(read.isWhole(), whole);
        QVERIFY(read.text() == QString::fromLatin1(text));
    }
}

void tst_device_texts::readsValues_data()
{
    columns<QString, QString>("headers", "values");
    row("a cookie's first part", "Set-Cookie: a=1; path=/\r\nSet-Cookie: b=2;\r\n", "cookie a=1");
    row("a cookie up to its line's end", "SET-cookie:a=1\r\nX: y;\r\n", "cookie a=1");
    row("a line end that is none", "Set-Cookie: a=1\rX: y\r\n", "cookie a=1");
    row("a cookie cut off", "Set-Cookie: a=1", "fails: Set-Cookie");
    row("a cookie in the page", "\r\nSet-Cookie: a=1;\r\n", "");
    row("a challenge",
        "WWW-Authenticate: Digest realm=\"r\\\", qop=\\\"x\", cnonce=\"c\", nonce=\"n\", opaque=\"o\", "
        "qop=\"auth,auth-int\"\r\n",
        R"(digest r\", qop=\"x|n|o|auth)");
    row("over two lines", "www-authenticate: digest realm=\"r\",\r\n\tnonce = \"n\"\r\n", "digest r|n||");
    row("a list without quotes", "WWW-Authenticate: Digest qop=auth, auth-int, nonce=n,stale=TRUE\r\n",
        "digest |n||auth stale");
    row("other lines and schemes",
        "X: realm=\"x\"\r\nWWW-Authenticate: Negotiate YQ==, Basic realm=\"Digest realm=\", Digest "
        "realm=\"r\"\r\nY: nonce=\"x\"\r\n",
        "digest r|||");
    row("the digest that is known",
        "WWW-Authenticate: Digest nonce=\"a\", algorithm=SHA-256\r\nWWW-Authenticate: Digest "
        "nonce=\"b\", algorithm=md5\r\n",
        "digest |b||");
    row("a value without end", "WWW-Authenticate: Digest nonce=\"n\", realm=\"r\r\nX: y\"\r\n",
        "fails: realm");
}

void tst_device_texts::readsValues()
{
    QFETCH(QString, headers);
    const QString reply = "HTTP/1.0 200 OK\r\n"_L1 + headers;
    QTEST(orFailure([&] { return valuesIn(reply); }), "values");
}

void tst_device_texts::readsMutilatedReplies()
{
    // Whatever comes, and in whatever pieces: nothing of it starts a line of its own in a request.
    const QByteArray good =
        "HTTP/1.1 401 No\r\nSet-Cookie: a=1; b\r\nWWW-Authenticate: Digest realm=\"r\", nonce=\"n\", "
        "opaque=o, qop=auth\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n<p>ab\r\n0\r\n\r\n";
    const QByteArray bytes("\r\n\0\";,= \t\\:-5f", 15);
    QRandomGenerator random(4711);
    for (int round = 0; round < 5000; ++round) {
        QByteArray reply = good.first(random.bounded(good.size() + 1));
        for (int change = 0; change < 4 && !reply.isEmpty(); ++change)
            reply[random.bounded(reply.size())] = bytes[random.bounded(bytes.size())];
        HttpReply once;
        once.append(reply);
        HttpReply pieces;
        for (const char byte : reply)
            pieces.append({&byte, 1});
        QCOMPARE(pieces.text(), once.text());
        QCOMPARE(pieces.isWhole(), once.isWhole());
        const QString values = orFailure([&] { return valuesIn(once.text()); });
        QVERIFY2(!values.contains(u'\r') && !values.contains(u'\n'), reply);
    }
}

QTEST_GUILESS_MAIN(tst_device_texts)
#include "tst_device_texts.moc"
