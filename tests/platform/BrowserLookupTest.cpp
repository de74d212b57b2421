#include "platform/BrowserLookup.h"
#include "support/TestAppFolder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// A desktop whose home, configuration, data and programs all lie in the folder.
QProcessEnvironment desktopIn(const QTemporaryDir& dir) {
    QProcessEnvironment env;
    env.insert("HOME", dir.path());
    env.insert("XDG_CONFIG_DIRS", dir.filePath("etc"));
    env.insert("XDG_DATA_DIRS", dir.filePath("usr"));
    env.insert("PATH", dir.filePath("bin"));
    return env;
}

} // namespace

TEST(BrowserLookup, FollowsTheDesktopsAssociationsAndOnlyInstalledEntries) {
    QTemporaryDir dir;
    QProcessEnvironment env = desktopIn(dir);
    EXPECT_EQ(FindWebBrowserHandler(env), "");

    // A default whose desktop entry is not installed opens nothing.
    test::WriteFile(dir.filePath(".config/mimeapps.list"),
                    "[Default Applications]\nx-scheme-handler/https=gone.desktop;\n");
    EXPECT_EQ(FindWebBrowserHandler(env), "");

    // The system's cache of installed handlers.
    test::WriteFile(dir.filePath("usr/applications/mimeinfo.cache"),
                    "[MIME Cache]\ntext/plain=edit.desktop;\nx-scheme-handler/http=sys.desktop;\n");
    test::WriteFile(dir.filePath("usr/applications/sys.desktop"), "[Desktop Entry]\n");
    EXPECT_EQ(FindWebBrowserHandler(env), "sys.desktop");

    // The user's own default wins over the cache.
    test::WriteFile(dir.filePath(".local/share/applications/mine.desktop"), "[Desktop Entry]\n");
    test::WriteFile(dir.filePath(".config/mimeapps.list"),
                    "[Added Associations]\ntext/html=sys.desktop;\n"
                    "[Default Applications]\nx-scheme-handler/https=gone.desktop;mine.desktop\n");
    EXPECT_EQ(FindWebBrowserHandler(env), "mine.desktop");

    env.insert("BROWSER", " lynx ");
    EXPECT_EQ(FindWebBrowserHandler(env), "lynx");
}

TEST(BrowserLookup, TheSystemsBrowserAlternativeServesWhenNoTypeIsAssociated) {
    QTemporaryDir dir;
    QProcessEnvironment env = desktopIn(dir);
    const QString program = dir.filePath("bin/x-www-browser");
    test::WriteFile(program, "#!/bin/sh\n");
    EXPECT_EQ(FindWebBrowserHandler(env), "");
    QFile(program).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(FindWebBrowserHandler(env), program);
}
