#include "windows/list_height.h"

using namespace Qt::StringLiterals;

namespace velmora {

void limitHeight(QComboBox& list)
{
    list.setMaxVisibleItems(20);
    list.setStyleSheet(u"QComboBox { combobox-popup: 0; }"_s);
}

} // namespace velmora
