#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// The file list of the Pictures tab (File1_2), as the slide show sees it.
class PictureList {
public:
    virtual ~PictureList() = default;
    virtual QString folder() const = 0;
    virtual QStringList entries() const = 0;
    virtual QList<int> selectedRows() const = 0;
};

} // namespace cq
