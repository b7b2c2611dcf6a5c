#include "editor/list/record_model.h"

#include "common/texts/folded_text.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velmora {

RecordModel::RecordModel(const QLocale& language, QObject* parent)
    : QAbstractTableModel(parent), m_language(language)
{
}

void RecordModel::reset(const QStringList& captions, const QList<bool>& keys, RecordDescriptions descriptions)
{
    beginResetModel();
    m_captions = captions;
    m_keys = keys;
    m_descriptions = std::move(descriptions);
    m_records.clear();
    m_shown.clear();
    endResetModel();
}

void RecordModel::clear()
{
    if (rowCount() > 0)
        beginRemoveRows({}, 0, rowCount() - 1);
    const bool anyShown = rowCount() > 0;
    m_records.clear();
    m_shown.clear();
    if (anyShown)
        endRemoveRows();
}

void RecordModel::append(std::vector<QStringList> records)
{
    const size_t first = m_records.size();
    std::vector<Record> added;
    added.reserve(records.size());
    for (QStringList& values : records)
        added.push_back({std::move(values), {}});
    std::vector<size_t> found;
    for (size_t one = 0; one < added.size(); ++one)
        if (isFound(added[one]))
            found.push_back(first + one);
    if (!found.empty())
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(found.size()) - 1);
    std::move(added.begin(), added.end(), std::back_inserter(m_records));
    if (isSearching())
        m_shown.insert(m_shown.end(), found.begin(), found.end());
    if (!found.empty())
        endInsertRows();
}

void RecordModel::update(int row, const QStringList& values)
{
    m_records[place(row)] = {values, {}};
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

QString RecordModel::foldedRecord(const QStringList& values) const
{
    QString folded;
    for (int column = 0; column < columnCount(); ++column) {
        appendFolded(folded, values[column]);
        folded += u'\n';
        folded += m_descriptions.description(values, column).folded;
        folded += u'\n';
    }
    return folded;
}

/// Whether all words that are searched for are in the record.
bool RecordModel::isFound(Record& record) const
{
    if (!isSearching())
        return true;
    if (record.folded.isNull())
        record.folded = foldedRecord(record.values);
    return std::all_of(m_words.begin(), m_words.end(),
                       [&record](const QString& word) { return record.folded.contains(word); });
}

bool RecordModel::finds(const QStringList& values) const
{
    Record record{values, {}};
    return isFound(record);
}

void RecordModel::findShown()
{
    m_shown.clear();
    if (isSearching())
        for (size_t one = 0; one < m_records.size(); ++one)
            if (isFound(m_records[one]))
                m_shown.push_back(one);
}

void RecordModel::search(const QStringList& words)
{
    if (words == m_words)
        return;
    rearrange([this, &words] {
        m_words = words;
        findShown();
        return std::vector<size_t>();
    });
}

void RecordModel::learnDescriptions(MMain& main)
{
    for (Record& record : m_records) {
        m_descriptions.learn(main, record.values);
        record.folded = QString();
    }
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    if (isSearching())
        rearrange([this] {
            findShown();
            return std::vector<size_t>();
        });
}

/// Lets `change` change which records stand and are shown where. It returns the new place of each record, by
/// its old one, or nothing where all stay. Whoever refers to a record goes on referring to it.
void RecordModel::rearrange(const std::function<std::vector<size_t>()>& change)
{
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList kept = persistentIndexList();
    std::vector<size_t> places;
    for (const QModelIndex& one : kept)
        places.push_back(place(one.row()));
    const std::vector<size_t> newPlaces = change();
    for (qsizetype one = 0; one < kept.size(); ++one) {
        const size_t before = places[static_cast<size_t>(one)];
        changePersistentIndex(
            kept[one], index(rowOf(newPlaces.empty() ? before : newPlaces[before]), kept[one].column()));
    }
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

/// The row of a record; -1 where it is not shown.
int RecordModel::rowOf(size_t place) const
{
    if (!isSearching())
        return static_cast<int>(place);
    const auto shown = std::lower_bound(m_shown.begin(), m_shown.end(), place);
    return shown != m_shown.end() && *shown == place ? static_cast<int>(shown - m_shown.begin()) : -1;
}

QStringList RecordModel::keyOf(const QStringList& values) const
{
    QStringList key;
    for (qsizetype column = 0; column < m_keys.size(); ++column)
        if (m_keys[column])
            key << values[column];
    return key;
}

std::optional<int> RecordModel::find(const QStringList& values, int firstRow) const
{
    const QStringList key = keyOf(values);
    for (int row = firstRow; row < rowCount(); ++row)
        if (keyOf(record(row)) == key)
            return row;
    return std::nullopt;
}

int RecordModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return static_cast<int>(isSearching() ? m_shown.size() : m_records.size());
}

int RecordModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_captions.size());
}

QVariant RecordModel::data(const QModelIndex& index, int role) const
{
    const QStringList& values = record(index.row());
    const QString& value = values[index.column()];
    if (role == Qt::DisplayRole)
        return value;
    if (role != descriptionRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};
    const QString& description = m_descriptions.description(values, index.column()).text;
    if (description.isEmpty())
        return {};
    return role == Qt::AccessibleTextRole ? value + ", "_L1 + description : description;
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_captions.value(section);
    return {};
}

bool RecordModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (count <= 0)
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    for (int last = row + count - 1; last >= row; --last)
        m_records.erase(m_records.begin() + static_cast<std::ptrdiff_t>(place(last)));
    findShown();
    endRemoveRows();
    return true;
}

/// For each record, where its code's description comes among all of them; nothing for a column without any.
std::vector<int> RecordModel::descriptionRanks(int column, const QCollator& collator) const
{
    std::vector<int> ranks;
    if (!m_descriptions.describes(column))
        return ranks;
    // The same ones come again and again.
    QHash<QString, int> places;
    for (const Record& record : m_records)
        places.insert(m_descriptions.description(record.values, column).text, 0);
    QStringList texts = places.keys();
    std::sort(texts.begin(), texts.end(), collator);
    for (qsizetype place = 0; place < texts.size(); ++place)
        places[texts[place]] = static_cast<int>(place);
    ranks.reserve(m_records.size());
    for (const Record& record : m_records)
        ranks.push_back(places.value(m_descriptions.description(record.values, column).text));
    return ranks;
}

/// The places of the records in their new order.
std::vector<size_t> RecordModel::sortedPlaces(int column, Qt::SortOrder order) const
{
    QCollator collator(m_language);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
#ifdef Q_OS_WIN
    // The keys that Qt makes there are compared in another order than their bytes', and with what lies
    // behind.
    const auto compareCodes = [&](size_t one, size_t other) {
        return collator.compare(m_records[one].values[column], m_records[other].values[column]);
    };
#else
    std::vector<QCollatorSortKey> codes;
    codes.reserve(m_records.size());
    for (const Record& record : m_records)
        codes.push_back(collator.sortKey(record.values[column]));
    const auto compareCodes = [&codes](size_t one, size_t other) { return codes[one].compare(codes[other]); };
#endif
    const std::vector<int> descriptions = descriptionRanks(column, collator);
    std::vector<size_t> places(m_records.size());
    std::iota(places.begin(), places.end(), size_t{0});
    std::stable_sort(places.begin(), places.end(), [&](size_t one, size_t other) {
        int difference = compareCodes(one, other);
        if (difference == 0 && !descriptions.empty())
            difference = descriptions[one] - descriptions[other];
        return order == Qt::AscendingOrder ? difference < 0 : difference > 0;
    });
    return places;
}

void RecordModel::sort(int column, Qt::SortOrder order)
{
    const std::vector<size_t> places = sortedPlaces(column, order);
    rearrange([this, &places] {
        std::vector<Record> sorted;
        std::vector<size_t> newPlaces(m_records.size());
        sorted.reserve(m_records.size());
        for (const size_t before : places) {
            newPlaces[before] = sorted.size();
            sorted.push_back(std::move(m_records[before]));
        }
        m_records = std::move(sorted);
        for (size_t& shown : m_shown)
            shown = newPlaces[shown];
        std::sort(m_shown.begin(), m_shown.end());
        return newPlaces;
    });
}

} // namespace velmora
