#include "common/texts/folded_text.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What Unicode does not take apart.
QString foldedLetter(QChar letter)
{
    switch (letter.unicode()) {
    case u'ß':
        return u"ss"_s;
    case u'æ':
        return u"ae"_s;
    case u'œ':
        return u"oe"_s;
    case u'ø':
        return u"o"_s;
    case u'đ':
    case u'ð':
        return u"d"_s;
    case u'ł':
        return u"l"_s;
    case u'ı':
        return u"i"_s;
    case u'’':
        return u"'"_s;
    default:
        return letter;
    }
}

} // namespace

void appendFolded(QString& folded, const QString& text)
{
    // Most texts need no look at any table.
    const qsizetype before = folded.size();
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if (code >= 0x80) {
            folded.truncate(before);
            for (const QChar part : text.normalized(QString::NormalizationForm_KD).toCaseFolded())
                if (!part.isMark())
                    folded += foldedLetter(part);
            return;
        }
        folded += code >= u'A' && code <= u'Z' ? QChar(code + (u'a' - u'A')) : character;
    }
}

QString foldedText(const QString& text)
{
    QString folded;
    appendFolded(folded, text);
    return folded;
}

QStringList foldedWords(const QString& text)
{
    return foldedText(text).simplified().split(u' ', Qt::SkipEmptyParts);
}

} // namespace velmora
