#include "common/texts/message_texts.h"

#include "common/MMain.h"

namespace velmora {

MessageTexts::MessageTexts(MMain& main, const QStringList& codes) : m_main(&main)
{
    for (const QString& code : codes)
        m_texts.insert(code, main.messageText(code));
}

QString MessageTexts::line(const QString& code, const QString& substitution) const
{
    Q_ASSERT(m_texts.contains(code));
    bool show = false;
    return m_main->worded(code, m_texts.value(code), substitution, show);
}

} // namespace velmora
