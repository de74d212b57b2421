#pragma once

#include <QString>
#include <QStringList>

namespace cq {

// The user's media folders and the remembered output path, kept in ClipquillSetup.txt
// (key=value lines, CR LF). The sibling product's HarrowfinSetup.txt may give the first three.
struct DirectorySettings {
    QString gstrMyVideoDirectory;
    QString gstrMyMusicDirectory;
    QString gstrMyPicturesDirectory;
    QString gstrMyStdPicturesDirectory1;
    QString gstrMyStdPicturesDirectory2;
    QString gstrRenderToFileSpec;
    QString gstrFTPDirectory;
    QString gstrMyVideoProjectsDirectory; // gstrMyVideoDirectory + "/MyVideoProjects"

    // Apply the lines of a settings file. The sibling's file may set only the first three
    // folders. Unknown keys, blank lines and lines without "=" are skipped; a key missing from
    // the text leaves its setting as it was.
    void loadSettingsText(const QString& text, bool siblingFile);
    void LoadDirectoriesFromHarrowfinSetupFile(const QString& fileSpec);
    void LoadDirectoriesFromClipquillSetupFile(const QString& fileSpec);

    // The six lines of ClipquillSetup.txt, each with CR LF. Lines of other keys that the file
    // already held (extraLines) follow them, so a save never drops what another program wrote.
    QString settingsText(const QStringList& extraLines = {}) const;
    bool SaveDirectoriesToFile(const QString& fileSpec) const;
    bool SaveFTPDirectoryToFile(const QString& fileSpec) const;

    // The start-up order: sibling file, own file, sibling again when the video folder is still
    // empty, the desktop's folders (Videos, Music, Pictures) for what is still empty, then the
    // two further folders fall back to the video folder; finally the projects folder is named.
    // A settings path that is not a regular file is skipped; the sentences say which.
    QStringList loadAtStartup(const QString& siblingFile, const QString& ownFile,
                              const QString& xdgVideos, const QString& xdgMusic,
                              const QString& xdgPictures);
};

// A value that is a number is stored as that number's text ("007" becomes "7").
QString NormalizeNumericSetting(const QString& value);

} // namespace cq
