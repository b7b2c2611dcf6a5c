// A drop-down list whose entries are found by what is typed.
#pragma once

#include <QAbstractItemView>
#include <QComboBox>

namespace velmora {

/// Typing opens the list with the entries alone that hold every word typed, of code or description, without
/// regard to case and accents. Enter or Tab takes the proposed one, Escape leaves what was chosen before.
class SearchableList : public QComboBox {
    Q_OBJECT

public:
    explicit SearchableList(QWidget* parent = nullptr);

    void hidePopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void initStyleOption(QStyleOptionComboBox* option) const override;

private:
    bool isOpen() const { return view()->isVisible(); }
    bool searchKey(const QKeyEvent& event);
    void search(const QString& typed);
    void narrow();
    bool take();

    QString m_typed;
    /// The entries as they are searched, while something is typed.
    QStringList m_folded;
};

} // namespace velmora
