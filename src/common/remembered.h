// What a user finds again: places of windows, widths of columns, what was chosen last.
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

namespace velmora {

/// Kept for the session, and for later ones in a file of the user's. What can't be read or written there is
/// no reason for a message: it is found again in this session all the same.
class Remembered {
public:
    /// The names of what was chosen last in any window; the next one proposes it.
    static constexpr QLatin1StringView lastCompany{"Last/Company"};
    static constexpr QLatin1StringView lastEquipment{"Last/Equipment"};

    /// From now on everything is also kept in that file, and what stands in it is found.
    void keepIn(const QString& file) { m_file = file; }

    /// An invalid value where nothing is kept under the name.
    QVariant value(const QString& name) const;
    void set(const QString& name, const QVariant& value);

private:
    QString m_file;
    QHash<QString, QVariant> m_session;
};

} // namespace velmora
