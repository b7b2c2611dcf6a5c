#include "common/remembered.h"

#include <QSettings>

namespace velmora {

QVariant Remembered::value(const QString& name) const
{
    const auto known = m_session.constFind(name);
    if (known != m_session.constEnd())
        return known.value();
    return m_file.isEmpty() ? QVariant() : QSettings(m_file, QSettings::IniFormat).value(name);
}

void Remembered::set(const QString& name, const QVariant& value)
{
    m_session.insert(name, value);
    if (!m_file.isEmpty())
        QSettings(m_file, QSettings::IniFormat).setValue(name, value);
}

} // namespace velmora
