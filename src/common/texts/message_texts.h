// Texts of messages that are looked up before they are needed.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace velmora {

class MMain;

/// The lines of a run that must not read the database while it goes on. Must not outlive `main`.
class MessageTexts {
public:
    /// Looks all of them up. Throws DatabaseError.
    MessageTexts(MMain& main, const QStringList& codes);

    /// The message of `code` as MMain::messageLine() gives it. REQUIRES: it was looked up.
    QString line(const QString& code, const QString& substitution = {}) const;

private:
    MMain* m_main;
    QHash<QString, QString> m_texts;
};

} // namespace velmora
