#include "phonebook/conf_users.h"

#include "files/ansi.h"

#include <QStringView>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString textOf(const QByteArray& file)
{
    constexpr QByteArrayView byteOrderMark = "\xef\xbb\xbf";
    return file.startsWith(byteOrderMark) ? QString::fromUtf8(file.sliced(byteOrderMark.size()))
                                          : decodeText(file);
}

/// The lines of a text, one by one.
class Lines {
public:
    explicit Lines(QString text) : m_text(std::move(text)), m_lines(QStringView(m_text).split(u'\n'))
    {
        if (m_lines.last().isEmpty())
            m_lines.removeLast(); // the end of the line before
        for (QStringView& line : m_lines)
            if (line.endsWith(u'\r'))
                line.chop(1);
    }

    /// Whether a line of the whole text begins with `text`.
    bool hold(QLatin1StringView text) const
    {
        return std::any_of(m_lines.begin(), m_lines.end(),
                           [text](QStringView line) { return line.startsWith(text); });
    }
    /// Whether the last line has been read.
    bool atEnd() const { return m_read == m_lines.size(); }
    /// The number of the line that was read last.
    qsizetype number() const { return m_read; }
    /// The next line; an empty text behind the last one.
    QStringView next() { return atEnd() ? QStringView() : m_lines[m_read++]; }
    /// What stands after `key` in the next line; nothing when it does not begin so.
    std::optional<QStringView> nextValue(QLatin1StringView key)
    {
        const QStringView line = next();
        return line.startsWith(key) ? std::optional(line.sliced(key.size())) : std::nullopt;
    }

private:
    const QString m_text;
    QList<QStringView> m_lines;
    qsizetype m_read = 0;
};

ConfUser readUser(Lines& lines)
{
    ConfUser user;
    user.line = lines.number();
    const auto name = lines.nextValue("Name="_L1);
    const auto surname = name ? lines.nextValue("Surname="_L1) : std::nullopt;
    const auto extension = surname ? lines.nextValue("Extension="_L1) : std::nullopt;
    if (extension) {
        user.name = u"%1 %2 "_s.arg(*name, *surname);
        user.extension = extension->toString();
    }
    return user;
}

} // namespace

std::optional<QList<ConfUser>> readConfUsers(const QByteArray& file)
{
    Lines lines(textOf(file));
    if (!lines.hold("[User"_L1))
        return std::nullopt;
    QList<ConfUser> users;
    QStringView line = lines.next();
    if (line.startsWith("[Users]"_L1))
        line = lines.next();
    for (; !lines.atEnd(); line = lines.next()) {
        if (!line.startsWith("[User"_L1))
            continue;
        const ConfUser user = readUser(lines);
        if (!user.extension.isEmpty())
            users << user;
    }
    return users;
}

} // namespace velmora
