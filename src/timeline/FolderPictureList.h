#pragma once

#include "timeline/PictureList.h"

namespace cq {

// The pictures of one folder, sorted by name, none selected: the slide show's list when no
// browser tab provides one.
class FolderPictureList : public PictureList {
public:
    explicit FolderPictureList(QString folder) : m_folder(std::move(folder)) {}
    QString folder() const override { return m_folder; }
    QStringList entries() const override;
    QList<int> selectedRows() const override { return {}; }

private:
    QString m_folder;
};

} // namespace cq
