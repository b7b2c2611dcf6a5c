// Cells of the record list whose codes have descriptions.
#pragma once

#include <QStyledItemDelegate>

namespace velmora {

/// Paints what a code stands for beside it, in grey.
class DescriptionDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Between a code and its description, in pixels.
    static constexpr int gap = 8;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace velmora
