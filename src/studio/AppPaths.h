#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace cq {

// The fixed paths of the application folder, set once at start-up; everyone else only reads
// them. The names are those the rest of the code and its readers know them by.
struct AppPaths {
    QString appFolder; // no trailing slash

    QString gstrImageMagickFileSpec;       // System/convert
    QString gstrImageMagickScriptFileSpec; // SystemMediaGen/imagescript.sh
    QString gstrFFMPEGFileSpec;            // System/ffmpeg
    QString gstrFFMPEGScriptFileSpec;      // SystemMediaGen/c.sh
    QString gstrCatchFileSpec;             // SystemMediaGen/catch.txt
    QString gstrPicturesPageFileSpec;      // System/temp2.html
    QString gstrPicturePageFileSpec;       // system/temp3.html (lower-case folder)
    QString gstrHarrowfinSetupFileSpec;
    QString gstrClipquillSetupFileSpec;
    QString gstrFTPStartUpDirectoryFileSpec;
    QString gstrTempFilesDirectory; // the work folder of a recording and its render
    QString gstrSmallPicsDirectory;
    QString gstrRecordedAudioFileSpec;
    QString gstrFinalVideoFileSpec;
    QString gstrSoundEffectsDirectory;
    QString gstrFinalMixAVIFileSpec;
    QString gstrFinalMixMP4FileSpec;
    QString gstrFinalMixMP3FileSpec;
    QString gstrSystemTempDirectory;

    // Fixed names used at start-up only.
    QString tempDirectory;         // Temp
    QString splashPictureFileSpec; // SystemMedia/HarrowfinSplashScreen.JPG
    QString blackPictureFileSpec;  // SystemMedia/Black.jpg
    QString textListFileSpec;      // System/TTS.txt
    QString carrierListFileSpec;   // System/MMSServerList.txt

    // What renders wrote beside their results; kept across restarts, unlike the work folder.
    QString writtenFilesRecordFileSpec; // WrittenBesideResults.txt

    static AppPaths forFolder(const QString& appFolder);

    // Every path global with its name, in the order of the path table.
    QList<QPair<QString, QString>> globals() const;
};

} // namespace cq
