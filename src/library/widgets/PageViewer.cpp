#include "library/widgets/PageViewer.h"

#include "library/PicturePages.h"
#include "platform/TextFiles.h"

#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QTextDocument>

namespace cq {

PageViewer::PageViewer(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setFrameShape(QFrame::NoFrame);
    setStyleSheet(QStringLiteral("QTextBrowser { background: black; color: white; }"));
}

bool PageViewer::showPageFile(const QString& pageFileSpec) {
    if (!QFileInfo(pageFileSpec).isFile())
        return false;
    m_pageFileSpec = pageFileSpec;
    // A fresh document, so that pictures rewritten since the last visit are read again.
    document()->clear();
    setHtml(ReadFileToString(pageFileSpec));
    return true;
}

QVariant PageViewer::loadResource(int type, const QUrl& name) {
    if (type == QTextDocument::ImageResource) {
        const QString fileSpec = FileSpecFromPageUrl(name);
        // A FIFO named in a page would block the viewer until something writes to it.
        if (!QFileInfo(fileSpec).isFile())
            return {};
        QImageReader reader(fileSpec);
        reader.setAutoTransform(true);
        const QImage image = reader.read();
        if (!image.isNull())
            return image;
        return {};
    }
    return QTextBrowser::loadResource(type, name);
}

} // namespace cq
