#include "editor/list/DescriptionDelegate.h"

#include "editor/list/record_model.h"

#include <QApplication>
#include <QPainter>

namespace velmora {

void DescriptionDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QString description = index.data(RecordModel::descriptionRole).toString();
    if (description.isEmpty())
        return;
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    QRect place = style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    place.adjust(margin + cell.fontMetrics.horizontalAdvance(cell.text) + gap, 0, -margin, 0);
    if (place.width() <= 0)
        return;
    const bool selected = cell.state.testFlag(QStyle::State_Selected);
    QColor grey = cell.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    grey.setAlphaF(selected ? 0.8F : 0.6F);
    painter->save();
    painter->setFont(cell.font);
    painter->setPen(grey);
    painter->drawText(place, static_cast<int>(cell.displayAlignment | Qt::TextSingleLine),
                      cell.fontMetrics.elidedText(description, Qt::ElideRight, place.width()));
    painter->restore();
}

} // namespace velmora
