// The one way in which reading and writing files fails.
#pragma once

#include <QString>

#include <stdexcept>

namespace velmora {

/// A file that could not be read or written.
class FileError : public std::runtime_error {
public:
    FileError(QString path, QString description)
        : std::runtime_error((path + QLatin1String(": ") + description).toStdString()),
          m_path(std::move(path)),
          m_description(std::move(description))
    {
    }

    const QString& path() const { return m_path; }
    /// The system's reason.
    const QString& description() const { return m_description; }

private:
    QString m_path;
    QString m_description;
};

} // namespace velmora
