#pragma once

#include "app/Startup.h"
#include "app/widgets/frmClipquill.h"
#include "library/PicturesWebPage.h"
#include "library/widgets/MediaBrowser.h"
#include "library/widgets/PageViewer.h"
#include "support/TestAppFolder.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

#include <gtest/gtest.h>

#include <memory>

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

// The studio over a pictures folder, shown, once the folder's thumbnail page is made.
inline void OpenStudioOverPictures(std::unique_ptr<frmClipquill>& window, const TestAppFolder& app,
                                   const QString& pictures) {
    WriteFile(app.file("ClipquillSetup.txt"),
              ("gstrMyPicturesDirectory=" + pictures + "\r\n").toUtf8());
    window = std::make_unique<frmClipquill>(
        WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    window->resize(1300, 800);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !window->mediaBrowser().picturesPage().isBusy(); }, 60000));
}

} // namespace cq::test
