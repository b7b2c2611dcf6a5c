// The start page: what the main window shows while no child is open.
#pragma once

#include <QHash>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include <functional>

class QAction;
class QBoxLayout;

namespace velmora {

class MMain;

/// Offers what is usually done next, and shows the companies with the number of their phones per model. They
/// are read anew whenever the page appears, since what was done meanwhile may have changed them. The windows
/// open with the company that is selected; Enter or a double click opens the one that is used next with it.
class FStart : public QWidget {
    Q_OBJECT

public:
    explicit FStart(MMain& main);

    /// Offers those of the menu's items, by control name, that the user can get at.
    void setItems(const QHash<QString, QAction*>& items);

    /// Offers the languages; `store` stores the one that was chosen. `stored` is the one that is stored now.
    void offerLanguages(const QStringList& languages, const QString& stored,
                        const std::function<void(const QString&)>& store);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* createSteps();
    QWidget* createCompanies();
    QWidget* createLanguages();
    void focusFirst();
    void readCompanies();
    void fillCompanies();
    void choose(const QTreeWidgetItem* company);
    void open(const QTreeWidgetItem& company, int column);
    QPushButton* nextStep(const QTreeWidgetItem& company) const;
    void showHint(const QString& text);
    void storeLanguage(const QString& language, const std::function<void(const QString&)>& store);

    MMain& m_main;
    /// By the name of the menu item that each stands for.
    QHash<QString, QPushButton*> m_steps;
    QTreeWidget* m_companies = nullptr;
    /// What opens the selected company.
    QLabel* m_next = nullptr;
    /// Stands in the place of the companies where there are none.
    QLabel* m_hint = nullptr;
    QWidget* m_languageBox = nullptr;
    QBoxLayout* m_languageRow = nullptr;
    QHash<QString, QPushButton*> m_languages;
    QLabel* m_languageNote = nullptr;
};

} // namespace velmora
