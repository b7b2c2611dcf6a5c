// Connection strings: "Key=Value" pairs separated by ";", as ParamDB.txt holds them.
#pragma once

#include <QHash>
#include <QString>

namespace velmora {

/// `text` with dots for every password that stands in it as in a connection string, and for what follows up
/// to the next key that Velmora knows: a password may itself hold ";" or quotes.
QString withoutPasswords(const QString& text);

/// A parsed connection string. Keys are case-insensitive and trimmed; values are trimmed.
class ConnectionString {
public:
    /// Reads the pairs of `given`; relative file names in it start from `folder`, or, when that is empty,
    /// from the current directory. Throws DatabaseError when a piece holds no "=".
    explicit ConnectionString(const QString& given, const QString& folder = {});

    /// The text, with dots for the password.
    QString text() const;

    /// The value of `key`, or an empty text when the key is absent.
    QString value(const QString& key) const;

    /// The value of `key`. Throws DatabaseError naming the key when it is absent or empty.
    QString required(const QString& key) const;

    /// The value of `key` as the name of a file. Throws like required().
    QString requiredFile(const QString& key) const;

private:
    QString wordsAbout(const QString& piece) const;

    QString m_text;
    QString m_folder;
    QHash<QString, QString> m_values;
};

} // namespace velmora
