#pragma once

#include "library/widgets/PageViewer.h"

#include <QTextBlock>
#include <QTextDocument>

namespace cq::test {

// The first image of the page shown in a viewer: its source and its size on the page.
struct ShownImage {
    QString source;
    int width = 0;
    int height = 0;
};

inline ShownImage FirstImage(PageViewer* viewer) {
    for (QTextBlock block = viewer->document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFormat format = it.fragment().charFormat();
            if (format.isImageFormat()) {
                const QTextImageFormat image = format.toImageFormat();
                return {image.name(), int(image.width()), int(image.height())};
            }
        }
    return {};
}

} // namespace cq::test
