#include "http/http_reply.h"

#include "files/ansi.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <cctype>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr QByteArrayView endOfPage = "</html>";
/// As much of a line as tells its kind: a status, the size of a chunk, or that it is blank.
constexpr qsizetype longestLine = 64;

struct HeaderLine {
    QString value;
    /// Whether the end of the line has come.
    bool isEnded = false;
};

/// The header lines of that name, in lower case, of a head, with their continuations. A line ends with LF;
/// what follows a CR before it has no place in a value, and nor has NUL.
QList<HeaderLine> headerLines(const QString& reply, QLatin1StringView name)
{
    QList<HeaderLine> lines;
    bool isWanted = false;
    for (qsizetype begin = 0; begin < reply.size();) {
        const qsizetype feed = reply.indexOf(u'\n', begin);
        const qsizetype end = feed < 0 ? reply.size() : feed;
        const QStringView line = QStringView(reply).sliced(begin, end - begin);
        begin = end + 1;
        if (line.isEmpty() || line == u'\r')
            break;
        const bool continues = line.startsWith(u' ') || line.startsWith(u'\t');
        const qsizetype colon = line.indexOf(u':');
        if (!continues)
            isWanted = colon >= 0 && line.first(colon).trimmed().compare(name, Qt::CaseInsensitive) == 0;
        if (!isWanted)
            continue;
        QString value = (continues ? line : line.sliced(colon + 1)).toString().replace(u'\0', u' ');
        value = value.left(value.indexOf(u'\r')).trimmed();
        if (!continues)
            lines << HeaderLine{};
        else
            lines.last().value += u' ';
        lines.last().value += value;
        lines.last().isEnded = feed >= 0;
    }
    return lines;
}

/// The length that a head announces for its body; nothing where it announces none, or none that makes sense.
std::optional<qint64> contentLengthOf(const QString& head)
{
    std::optional<qint64> length;
    for (const HeaderLine& line : headerLines(head, "content-length"_L1)) {
        for (const QString& word : line.value.split(u',')) {
            static const QRegularExpression digits(u"^[0-9]{1,18}$"_s);
            const QString number = word.trimmed();
            if (!line.isEnded || !digits.match(number).hasMatch() ||
                length.value_or(number.toLongLong()) != number.toLongLong())
                return std::nullopt;
            length = number.toLongLong();
        }
    }
    return length;
}

/// Whether the last one of a list of codings is the chunked one.
bool endsChunked(const QString& codings)
{
    return codings.split(u',').last().trimmed().compare("chunked"_L1, Qt::CaseInsensitive) == 0;
}

bool isHexadecimal(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

struct Field {
    QString value;
    bool isEnded = true;
};

struct Challenge {
    QString scheme;
    QHash<QString, Field> fields;
};

/// The challenges in one header line. Between quotes, a "\" and what follows it stay as they are: a digest is
/// made of them so.
QList<Challenge> challengesOf(const QString& line)
{
    // A word, and what follows its "=": a text in quotes, whose end may be missing, or another word.
    static const QRegularExpression item(
        uR"re(([^\s,="]++)(?:\s*+=\s*+(?:"((?:[^"\\]++|\\.)*+)("?)|([^\s,"]*+)))?)re"_s);
    QList<Challenge> challenges;
    for (const QRegularExpressionMatch& match : item.globalMatch(line)) {
        const QString name = match.captured(1).toLower();
        const bool isQuoted = match.hasCaptured(2);
        if (isQuoted || match.hasCaptured(4)) {
            // The first of two fields of one name counts.
            if (!challenges.isEmpty() && !challenges.last().fields.contains(name))
                challenges.last().fields.insert(
                    name, isQuoted ? Field{match.captured(2), !match.captured(3).isEmpty()}
                                   : Field{match.captured(4)});
        } else if (name != "auth"_L1 && name != "auth-int"_L1) {
            // Those two are the rest of a list of qualities that has no quotes.
            challenges << Challenge{name, {}};
        }
    }
    return challenges;
}

/// The challenge to answer: the first one of the Digest scheme for MD5, else the first one of that scheme.
std::optional<Challenge> chosenChallenge(const QString& reply)
{
    std::optional<Challenge> chosen;
    for (const HeaderLine& line : headerLines(reply, "www-authenticate"_L1)) {
        for (const Challenge& challenge : challengesOf(line.value)) {
            if (challenge.scheme != "digest"_L1)
                continue;
            const QString algorithm = challenge.fields.value(u"algorithm"_s, {u"MD5"_s}).value;
            if (algorithm.compare("MD5"_L1, Qt::CaseInsensitive) == 0)
                return challenge;
            if (!chosen)
                chosen = challenge;
        }
    }
    return chosen;
}

} // namespace

void HttpReply::append(QByteArrayView arrived)
{
    while (!arrived.isEmpty() && m_state != State::Whole) {
        if (m_state == State::UntilClose) {
            keep(arrived);
            return;
        }
        if (m_state == State::Head && m_kept.isEmpty() &&
            (arrived.front() == '\r' || arrived.front() == '\n')) {
            // Line ends before a head are left over from the answer before it.
            arrived = arrived.sliced(1);
            continue;
        }
        const bool isBody = m_state == State::Counted || m_state == State::Chunk;
        arrived = arrived.sliced(isBody ? takeBody(arrived) : takePartOfLine(arrived));
    }
}

QString HttpReply::text() const
{
    return decodeAnsi(m_kept);
}

/// Takes what belongs to the line that is coming in, and the line once its end is there. Returns how many
/// bytes that were.
qsizetype HttpReply::takePartOfLine(QByteArrayView arrived)
{
    if (m_state == State::ChunkSize && m_line.isEmpty() && !isHexadecimal(arrived.front())) {
        // A page that says it comes in chunks, and does not.
        m_state = State::UntilClose;
        return 0;
    }
    const qsizetype feed = arrived.indexOf('\n');
    const QByteArrayView part = feed < 0 ? arrived : arrived.first(feed + 1);
    m_line += part.first(std::min(part.size(), longestLine - m_line.size()));
    if (m_state == State::Head)
        keep(part);
    if (feed >= 0) {
        takeLine();
        m_line.clear();
    }
    return part.size();
}

void HttpReply::takeLine()
{
    const bool isBlank = m_line == "\n" || m_line == "\r\n";
    if (m_state == State::Head)
        takeHeadLine(isBlank);
    else if (m_state == State::ChunkSize)
        takeChunkSize();
    else if (m_state == State::ChunkEnd)
        m_state = isBlank ? State::ChunkSize : State::UntilClose;
    else if (isBlank)
        m_state = State::Whole;
}

void HttpReply::takeHeadLine(bool isBlank)
{
    const bool isFirst = m_kept.indexOf('\n') == m_kept.size() - 1;
    if (!isFirst && !isBlank)
        return;
    const int status = statusOf(QString::fromLatin1(m_kept.left(longestLine)));
    if (status == 0) {
        m_state = State::UntilClose;
    } else if (isBlank && status < 200 && status != 101) {
        // The answer itself is still to come.
        m_kept.clear();
    } else if (isBlank) {
        beginBody(status);
    }
}

void HttpReply::beginBody(int status)
{
    const QString head = text();
    const QList<HeaderLine> codings = headerLines(head, "transfer-encoding"_L1);
    const std::optional<qint64> length = contentLengthOf(head);
    if (status == 204 || status == 304)
        m_state = State::Whole;
    else if (!codings.isEmpty())
        m_state = endsChunked(codings.last().value) ? State::ChunkSize : State::UntilClose;
    else if (length)
        m_state = *length > 0 ? State::Counted : State::Whole;
    else
        m_state = State::UntilClose;
    m_left = length.value_or(0);
}

void HttpReply::takeChunkSize()
{
    const auto digitsEnd = std::find_if_not(m_line.cbegin(), m_line.cend(), isHexadecimal);
    const QByteArrayView digits(m_line.cbegin(), digitsEnd);
    constexpr qsizetype mostDigits = 15;
    m_left = digits.toLongLong(nullptr, 16);
    if (digits.size() > mostDigits)
        m_state = State::UntilClose;
    else
        m_state = m_left > 0 ? State::Chunk : State::Trailer;
}

qsizetype HttpReply::takeBody(QByteArrayView arrived)
{
    const auto size = static_cast<qsizetype>(std::min<qint64>(m_left, arrived.size()));
    keep(arrived.first(size));
    m_left -= size;
    if (m_left == 0)
        m_state = m_state == State::Chunk ? State::ChunkEnd : State::Whole;
    return size;
}

void HttpReply::keep(QByteArrayView bytes)
{
    m_hasBegun = true;
    m_kept += bytes.first(std::min(bytes.size(), longest - m_kept.size()));
    // The end of the page may come in two pieces.
    m_tail += bytes;
    m_pageEnded = m_pageEnded || m_tail.contains(endOfPage);
    m_tail = m_tail.last(std::min(m_tail.size(), endOfPage.size() - 1));
}

int statusOf(const QString& reply)
{
    static const QRegularExpression statusLine(uR"(^HTTP/[0-9]\.[0-9] ([0-9]{3})(?![0-9]))"_s);
    return statusLine.match(reply).captured(1).toInt();
}

bool isSuccess(const QString& reply)
{
    return statusOf(reply) / 100 == 2;
}

std::optional<QString> cookieOf(const QString& reply)
{
    const QList<HeaderLine> lines = headerLines(reply, "set-cookie"_L1);
    if (lines.isEmpty())
        return std::nullopt;
    const qsizetype end = lines.first().value.indexOf(u';');
    if (end < 0 && !lines.first().isEnded)
        throw std::invalid_argument("Set-Cookie");
    return lines.first().value.left(end);
}

std::optional<DigestChallenge> digestChallengeOf(const QString& reply)
{
    const std::optional<Challenge> chosen = chosenChallenge(reply);
    if (!chosen)
        return std::nullopt;
    DigestChallenge challenge;
    const auto read = [&](const QString& name) {
        const Field field = chosen->fields.value(name);
        if (!field.isEnded && challenge.unended.isEmpty())
            challenge.unended = name;
        return field.value;
    };
    challenge.realm = read(u"realm"_s);
    // The domain is read like the others, but has no place in the answer.
    read(u"domain"_s);
    challenge.nonce = read(u"nonce"_s);
    challenge.opaque = read(u"opaque"_s);
    static const QRegularExpression separators(u"[\\s,]+"_s);
    challenge.qop = read(u"qop"_s).split(separators, Qt::SkipEmptyParts).value(0);
    challenge.stale = challenge.unended.isEmpty() &&
                      chosen->fields.value(u"stale"_s).value.compare("true"_L1, Qt::CaseInsensitive) == 0;
    return challenge;
}

QString RecVal(const QString& name, const QString& text)
{
    const qsizetype place = text.indexOf(name + "=\""_L1) + 1;
    const qsizetype restLength = text.size() - place - name.size() - 1;
    if (restLength < 0)
        throw std::invalid_argument(name.toStdString());
    const QString rest = text.last(restLength);
    const qsizetype end = rest.indexOf(u'"');
    if (end < 0)
        throw std::invalid_argument(name.toStdString());
    return rest.first(end);
}

} // namespace velmora
