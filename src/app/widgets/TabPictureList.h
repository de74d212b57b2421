#pragma once

#include "timeline/PictureList.h"

namespace cq {

class MediaTab;

// The Pictures tab's file list (File1_2) as the slide show sees it: the tab's folder, its listed
// files and the rows the user picked.
class TabPictureList : public PictureList {
public:
    explicit TabPictureList(const MediaTab& tab) : m_tab(tab) {}

    QString folder() const override;
    QStringList entries() const override;
    QList<int> selectedRows() const override;

private:
    const MediaTab& m_tab;
};

} // namespace cq
