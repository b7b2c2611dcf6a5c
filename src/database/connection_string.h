// Connection strings: "Key=Value" pairs separated by ";", as ParamDB.txt holds them.
#pragma once

#include <QHash>
#include <QString>

namespace velmora {

/// A parsed connection string. Keys are case-insensitive and trimmed; values are trimmed.
class ConnectionString {
public:
    /// Reads the pairs of `given`. Throws DatabaseError when a piece holds no "=".
    explicit ConnectionString(const QString& given);

    /// The text, with dots for the password.
    QString text() const;

    /// The value of `key`, or an empty text when the key is absent.
    QString value(const QString& key) const;

    /// The value of `key`. Throws DatabaseError naming the key when it is absent or empty.
    QString required(const QString& key) const;

private:
    QString m_text;
    QHash<QString, QString> m_values;
};

} // namespace velmora
