// What there is to know about one phone: what differs in its file, and where its values come from.
#pragma once

#include "generation/generate.h"
#include "status/explain.h"

#include <QTabWidget>
#include <QTreeWidget>

namespace velmora {

/// The pages `PageDifferences` and `PageValues`; what stands on the one that is open is looked up.
class PhonePages : public QTabWidget {
    Q_OBJECT

public:
    explicit PhonePages(MMain& main);

    /// Shows the phone; without `request` its file does not differ.
    void showPhone(const Phone& phone, const std::optional<GenerationRequest>& request);
    void forgetPhone();
    /// Whether the list of a page has the keyboard.
    bool isFocus(const QWidget* widget) const { return widget == m_differences || widget == m_values; }

Q_SIGNALS:
    /// The user wants to see a record in the editor: the one with these values.
    void recordWanted(const QString& table, const QHash<QString, QString>& key);

private:
    void showPage();
    void showDifferences();
    void showValues();
    void openInEditor();

    MMain& m_main;
    QTreeWidget* m_differences;
    QTreeWidget* m_values;
    std::optional<Phone> m_phone;
    std::optional<GenerationRequest> m_request;
    QList<ExplainedParameter> m_explained;
};

} // namespace velmora
