#pragma once

#include <QTextBrowser>

namespace cq {

// The embedded page viewer of the picture pages. It never follows a link itself: a click only
// reports the link (anchorClicked), and the owner decides what it shows. Images are read from
// the plain file paths that the pages hold.
class PageViewer : public QTextBrowser {
    Q_OBJECT
public:
    explicit PageViewer(QWidget* parent = nullptr);

    // Shows the page written to the file; false when it cannot be read.
    bool showPageFile(const QString& pageFileSpec);
    QString pageFileSpec() const { return m_pageFileSpec; }

protected:
    QVariant loadResource(int type, const QUrl& name) override;

private:
    QString m_pageFileSpec;
};

} // namespace cq
