#include "studio/AppPaths.h"

#include <QDir>

namespace cq {

AppPaths AppPaths::forFolder(const QString& appFolder) {
    AppPaths p;
    QString root = QDir::cleanPath(appFolder);
    while (root.size() > 1 && root.endsWith(u'/'))
        root.chop(1);
    p.appFolder = root;
    auto at = [&root](const char* relative) {
        return root + QLatin1String(relative);
    };
    p.gstrImageMagickFileSpec = at("/System/convert");
    p.gstrImageMagickScriptFileSpec = at("/SystemMediaGen/imagescript.sh");
    p.gstrFFMPEGFileSpec = at("/System/ffmpeg");
    p.gstrFFMPEGScriptFileSpec = at("/SystemMediaGen/c.sh");
    p.gstrCatchFileSpec = at("/SystemMediaGen/catch.txt");
    p.gstrPicturesPageFileSpec = at("/System/temp2.html");
    p.gstrPicturePageFileSpec = at("/system/temp3.html");
    p.gstrHarrowfinSetupFileSpec = at("/HarrowfinSetup.txt");
    p.gstrClipquillSetupFileSpec = at("/ClipquillSetup.txt");
    p.gstrFTPStartUpDirectoryFileSpec = at("/FTPStartUpDirectory.txt");
    p.gstrTempFilesDirectory = at("/ClipquillTempFiles");
    p.gstrSmallPicsDirectory = at("/SmallPics");
    p.gstrRecordedAudioFileSpec = at("/ClipquillTempFiles/RecordedAudio.wav");
    p.gstrFinalVideoFileSpec = at("/ClipquillTempFiles/FinalVideo.mpg");
    p.gstrSoundEffectsDirectory = at("/SystemMedia/Sound Effects");
    p.gstrFinalMixAVIFileSpec = at("/ClipquillTempFiles/FinalMix.avi");
    p.gstrFinalMixMP4FileSpec = at("/ClipquillTempFiles/FinalMix.mp4");
    p.gstrFinalMixMP3FileSpec = at("/ClipquillTempFiles/FinalMix.mp3");
    p.gstrSystemTempDirectory = at("/SystemTemp");
    p.tempDirectory = at("/Temp");
    p.splashPictureFileSpec = at("/SystemMedia/HarrowfinSplashScreen.JPG");
    p.blackPictureFileSpec = at("/SystemMedia/Black.jpg");
    p.textListFileSpec = at("/System/TTS.txt");
    p.carrierListFileSpec = at("/System/MMSServerList.txt");
    p.writtenFilesRecordFileSpec = at("/WrittenBesideResults.txt");
    return p;
}

QList<QPair<QString, QString>> AppPaths::globals() const {
    return {
        {QStringLiteral("gstrImageMagickFileSpec"), gstrImageMagickFileSpec},
        {QStringLiteral("gstrImageMagickScriptFileSpec"), gstrImageMagickScriptFileSpec},
        {QStringLiteral("gstrFFMPEGFileSpec"), gstrFFMPEGFileSpec},
        {QStringLiteral("gstrFFMPEGScriptFileSpec"), gstrFFMPEGScriptFileSpec},
        {QStringLiteral("gstrCatchFileSpec"), gstrCatchFileSpec},
        {QStringLiteral("gstrPicturesPageFileSpec"), gstrPicturesPageFileSpec},
        {QStringLiteral("gstrPicturePageFileSpec"), gstrPicturePageFileSpec},
        {QStringLiteral("gstrHarrowfinSetupFileSpec"), gstrHarrowfinSetupFileSpec},
        {QStringLiteral("gstrClipquillSetupFileSpec"), gstrClipquillSetupFileSpec},
        {QStringLiteral("gstrFTPStartUpDirectoryFileSpec"), gstrFTPStartUpDirectoryFileSpec},
        {QStringLiteral("gstrTempFilesDirectory"), gstrTempFilesDirectory},
        {QStringLiteral("gstrSmallPicsDirectory"), gstrSmallPicsDirectory},
        {QStringLiteral("gstrRecordedAudioFileSpec"), gstrRecordedAudioFileSpec},
        {QStringLiteral("gstrFinalVideoFileSpec"), gstrFinalVideoFileSpec},
        {QStringLiteral("gstrSoundEffectsDirectory"), gstrSoundEffectsDirectory},
        {QStringLiteral("gstrFinalMixAVIFileSpec"), gstrFinalMixAVIFileSpec},
        {QStringLiteral("gstrFinalMixMP4FileSpec"), gstrFinalMixMP4FileSpec},
        {QStringLiteral("gstrFinalMixMP3FileSpec"), gstrFinalMixMP3FileSpec},
        {QStringLiteral("gstrSystemTempDirectory"), gstrSystemTempDirectory},
    };
}

} // namespace cq
