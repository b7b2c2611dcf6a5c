// What a device answers: where the answer ends, and what it says. Nothing here knows of a socket.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velmora {

/// An answer that comes piece by piece. It is whole when its body has the length that its head announces,
/// when its last chunk has come, when it can't have a body, and at the latest with "</html>": devices keep
/// connections open after their page. Interim answers are passed over, and so is what comes after the end.
///
/// The format: RFC 9112. What does not follow it ends with the connection, as does what announces no length.
class HttpReply {
public:
    /// The most that is kept, in bytes; of what comes after it only the end is looked for.
    static constexpr qsizetype longest = 1 << 20;

    void append(QByteArrayView arrived);
    /// Whether not one byte of an answer has come.
    bool isEmpty() const { return !m_hasBegun; }
    bool isWhole() const { return m_state == State::Whole || m_pageEnded; }
    /// The head and the body without the frames of its chunks, read as Windows-1252.
    QString text() const;

private:
    enum class State { Head, UntilClose, Counted, ChunkSize, Chunk, ChunkEnd, Trailer, Whole };

    qsizetype takePartOfLine(QByteArrayView arrived);
    void takeLine();
    void takeHeadLine(bool isBlank);
    void beginBody(int status);
    void takeChunkSize();
    qsizetype takeBody(QByteArrayView arrived);
    void keep(QByteArrayView bytes);

    State m_state = State::Head;
    QByteArray m_kept;
    /// The beginning of the line that is coming in.
    QByteArray m_line;
    /// How much of the body or the chunk is still to come.
    qint64 m_left = 0;
    /// The last bytes that came, for the end of the page, which may come in two pieces.
    QByteArray m_tail;
    bool m_hasBegun = false;
    bool m_pageEnded = false;
};

/// The status of an answer; 0 where it does not begin with a status line.
int statusOf(const QString& reply);
/// Whether the status is one of success.
bool isSuccess(const QString& reply);

/// The first cookie that an answer sets, up to its ";" or to the end of its line; nothing where it sets none.
/// Throws std::invalid_argument when the answer is cut off within it.
std::optional<QString> cookieOf(const QString& reply);

/// What a device that asks for a digest wants it made of (RFC 7616). A field that it leaves out is empty.
struct DigestChallenge {
    QString realm;
    QString nonce;
    QString opaque;
    /// The first quality of protection that is offered.
    QString qop;
    /// The field that lacks its end quote; empty where each has one.
    QString unended;
    /// Whether only the nonce of the digest before was too old.
    bool stale = false;
};

/// The challenge of the Digest scheme in an answer, the first one for MD5 where there are several.
std::optional<DigestChallenge> digestChallengeOf(const QString& reply);

/// The value that stands between double quotes after `name` and "=" in `text`, at its first occurrence. Where
/// there is none, whatever stands before the first double quote of the text without its first
/// name.size() + 1 characters. Throws std::invalid_argument, which holds the name, when there is no double
/// quote to end it.
QString RecVal(const QString& name, const QString& text);

} // namespace velmora
