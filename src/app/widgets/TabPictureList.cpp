#include "app/widgets/TabPictureList.h"

#include "library/widgets/MediaTab.h"

namespace cq {

QString TabPictureList::folder() const {
    return m_tab.path();
}

QStringList TabPictureList::entries() const {
    return m_tab.entries();
}

QList<int> TabPictureList::selectedRows() const {
    return m_tab.selectedRows();
}

} // namespace cq
