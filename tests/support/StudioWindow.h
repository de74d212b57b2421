#pragma once

#include "app/widgets/frmClipquill.h"
#include "support/TestAppFolder.h"

#include <memory>

namespace cq::test {

// The studio's main window on a test application folder, shown as the user sees it.
inline std::unique_ptr<frmClipquill> OpenStudio(const TestAppFolder& app) {
    auto w = std::make_unique<frmClipquill>(
        WindowlessStartup::run(app.path(), XdgFolders::fromDesktop()));
    w->show();
    return w;
}

} // namespace cq::test
