#include "windows/SearchableList.h"

#include "common/texts/folded_text.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QListView>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many entries the open list shows at once.
constexpr int visibleEntries = 20;

/// How well an entry fits, the best being 0: it is what was typed, or begins with it, or one of its words
/// does, or it holds all words somewhere. Nothing where one is missing.
std::optional<int> rankOf(const QString& entry, const QString& typed, const QStringList& words)
{
    if (!std::all_of(words.begin(), words.end(),
                     [&entry](const QString& word) { return entry.contains(word); }))
        return std::nullopt;
    if (entry == typed || entry.startsWith(typed + u' '))
        return 0;
    if (entry.startsWith(typed))
        return 1;
    const qsizetype place = entry.indexOf(words.value(0));
    return place > 0 && entry[place - 1].isLetterOrNumber() ? 3 : 2;
}

} // namespace

SearchableList::SearchableList(QWidget* parent) : QComboBox(parent)
{
    auto* entries = new QListView;
    entries->setUniformItemSizes(true); // there may be a hundred thousand
    setView(entries);
    setMaxVisibleItems(visibleEntries);
    // Below the field, where what is typed stays in sight, and not over the whole screen.
    setStyleSheet(u"QComboBox { combobox-popup: 0; }"_s);
    view()->installEventFilter(this);
}

void SearchableList::hidePopup()
{
    QComboBox::hidePopup();
    // Which entry the list proposes stays: its choice may be told only after this.
    for (int entry = 0; entry < m_folded.size(); ++entry)
        static_cast<QListView*>(view())->setRowHidden(entry, false);
    m_folded.clear();
    m_typed.clear();
}

void SearchableList::initStyleOption(QStyleOptionComboBox* option) const
{
    QComboBox::initStyleOption(option);
    if (!m_typed.isEmpty())
        option->currentText = m_typed;
}

void SearchableList::keyPressEvent(QKeyEvent* event)
{
    if (searchKey(*event))
        return;
    if (isOpen())
        QCoreApplication::sendEvent(view(), event);
    else
        QComboBox::keyPressEvent(event);
}

bool SearchableList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != view() || event->type() != QEvent::KeyPress)
        return QComboBox::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
        // On to the next field, as if the list had not been open; but not from what fits nothing.
        if (take())
            QCoreApplication::sendEvent(this, event);
        return true;
    }
    return searchKey(*key);
}

/// Takes a key that is part of what is searched for, and says whether it was.
bool SearchableList::searchKey(const QKeyEvent& event)
{
    const bool command = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (event.key() == Qt::Key_Backspace && !m_typed.isEmpty()) {
        search(m_typed.chopped(1));
        return true;
    }
    // Without a search the blank opens the list, as in every other one.
    const bool letter = !event.text().isEmpty() && event.text()[0].isPrint() &&
                        !(event.key() == Qt::Key_Space && m_typed.isEmpty());
    if (command || !letter || count() == 0)
        return false;
    if (!isOpen())
        showPopup();
    search(m_typed + event.text());
    return true;
}

void SearchableList::search(const QString& typed)
{
    m_typed = typed;
    if (m_folded.isEmpty())
        for (int entry = 0; entry < count(); ++entry)
            m_folded << foldedText(itemText(entry));
    narrow();
    update();
}

/// Shows the entries that fit, and proposes the one that fits best.
void SearchableList::narrow()
{
    auto* entries = static_cast<QListView*>(view());
    const QString typed = foldedText(m_typed);
    const QStringList words = foldedWords(m_typed);
    int best = -1;
    int bestRank = std::numeric_limits<int>::max();
    for (int entry = 0; entry < m_folded.size(); ++entry) {
        const std::optional<int> rank = rankOf(m_folded[entry], typed, words);
        entries->setRowHidden(entry, !rank);
        if (rank && *rank < bestRank) {
            best = entry;
            bestRank = *rank;
        }
    }
    const int proposed = words.isEmpty() ? currentIndex() : best;
    entries->setCurrentIndex(proposed < 0 ? QModelIndex() : model()->index(proposed, modelColumn()));
    if (proposed >= 0)
        entries->scrollTo(entries->currentIndex());
}

/// Chooses the proposed entry, if anything is typed. Says whether what is typed fits one.
bool SearchableList::take()
{
    const int entry = view()->currentIndex().row();
    const bool chosen = !m_typed.isEmpty();
    if (chosen && entry < 0)
        return false;
    hidePopup();
    if (chosen) {
        setCurrentIndex(entry);
        Q_EMIT activated(entry);
        Q_EMIT textActivated(itemText(entry));
    }
    return true;
}

} // namespace velmora
