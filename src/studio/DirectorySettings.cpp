#include "studio/DirectorySettings.h"

#include "platform/OutsideText.h"
#include "platform/TextFiles.h"

#include <QRegularExpression>

namespace cq {

namespace {

// Settings files may come from older installations or an editor, in their encodings.
QString settingsFileText(const QString& fileSpec) {
    const OutsideText decoded = DecodeOutsideText(ReadFileToBytes(fileSpec));
    return decoded.ok() ? decoded.text : QString();
}

const char* const kOwnKeys[] = {"gstrMyVideoDirectory",        "gstrMyMusicDirectory",
                                "gstrMyPicturesDirectory",     "gstrMyStdPicturesDirectory1",
                                "gstrMyStdPicturesDirectory2", "gstrRenderToFileSpec"};

QString* settingFor(DirectorySettings& s, const QString& key, bool siblingFile) {
    if (key == u"gstrMyVideoDirectory")
        return &s.gstrMyVideoDirectory;
    if (key == u"gstrMyMusicDirectory")
        return &s.gstrMyMusicDirectory;
    if (key == u"gstrMyPicturesDirectory")
        return &s.gstrMyPicturesDirectory;
    if (siblingFile)
        return nullptr;
    if (key == u"gstrMyStdPicturesDirectory1")
        return &s.gstrMyStdPicturesDirectory1;
    if (key == u"gstrMyStdPicturesDirectory2")
        return &s.gstrMyStdPicturesDirectory2;
    if (key == u"gstrRenderToFileSpec")
        return &s.gstrRenderToFileSpec;
    return nullptr;
}

// Lines are CR LF; a file edited with LF-only line ends is read the same way.
QStringList settingsLines(const QString& text) {
    QStringList lines;
    for (const QString& crlfLine : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        for (const QString& line : crlfLine.split(u'\n', Qt::SkipEmptyParts))
            lines << line;
    return lines;
}

bool isOwnKey(const QString& key) {
    for (const char* k : kOwnKeys)
        if (key == QLatin1String(k))
            return true;
    return false;
}

} // namespace

QString NormalizeNumericSetting(const QString& value) {
    static const QRegularExpression number(
        QStringLiteral(R"(^\s*[+-]?(\d+(\.\d*)?|\.\d+)([eE][+-]?\d+)?\s*$)"));
    if (!number.match(value).hasMatch())
        return value;
    bool ok = false;
    const double v = value.trimmed().toDouble(&ok);
    return ok ? QString::number(v, 'g', 15) : value;
}

void DirectorySettings::loadSettingsText(const QString& text, bool siblingFile) {
    for (const QString& line : settingsLines(text)) {
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        if (QString* target = settingFor(*this, line.left(eq), siblingFile))
            *target = NormalizeNumericSetting(line.mid(eq + 1));
    }
}

void DirectorySettings::LoadDirectoriesFromHarrowfinSetupFile(const QString& fileSpec) {
    loadSettingsText(settingsFileText(fileSpec), true);
}

void DirectorySettings::LoadDirectoriesFromClipquillSetupFile(const QString& fileSpec) {
    loadSettingsText(settingsFileText(fileSpec), false);
}

QString DirectorySettings::settingsText(const QStringList& extraLines) const {
    QString text;
    text += QStringLiteral("gstrMyVideoDirectory=") + gstrMyVideoDirectory + QStringLiteral("\r\n");
    text += QStringLiteral("gstrMyMusicDirectory=") + gstrMyMusicDirectory + QStringLiteral("\r\n");
    text += QStringLiteral("gstrMyPicturesDirectory=") + gstrMyPicturesDirectory +
            QStringLiteral("\r\n");
    text += QStringLiteral("gstrMyStdPicturesDirectory1=") + gstrMyStdPicturesDirectory1 +
            QStringLiteral("\r\n");
    text += QStringLiteral("gstrMyStdPicturesDirectory2=") + gstrMyStdPicturesDirectory2 +
            QStringLiteral("\r\n");
    text += QStringLiteral("gstrRenderToFileSpec=") + gstrRenderToFileSpec + QStringLiteral("\r\n");
    for (const QString& line : extraLines)
        text += line + QStringLiteral("\r\n");
    return text;
}

bool DirectorySettings::SaveDirectoriesToFile(const QString& fileSpec) const {
    QStringList extra;
    for (const QString& line : settingsLines(settingsFileText(fileSpec))) {
        const qsizetype eq = line.indexOf(u'=');
        if (eq > 0 && !isOwnKey(line.left(eq)))
            extra << line;
    }
    return SaveTextToFile(settingsText(extra), fileSpec);
}

bool DirectorySettings::SaveFTPDirectoryToFile(const QString& fileSpec) const {
    return SaveTextToFile(
        QStringLiteral("gstrFTPDirectory=") + gstrFTPDirectory + QStringLiteral("\r\n"), fileSpec);
}

QStringList DirectorySettings::loadAtStartup(const QString& siblingFile, const QString& ownFile,
                                             const QString& xdgVideos, const QString& xdgMusic,
                                             const QString& xdgPictures) {
    QStringList problems;
    for (const QString& file : {siblingFile, ownFile}) {
        const QString problem = NotARegularFileProblem(file);
        if (!problem.isEmpty())
            problems << problem;
    }
    LoadDirectoriesFromHarrowfinSetupFile(siblingFile);
    LoadDirectoriesFromClipquillSetupFile(ownFile);
    if (gstrMyVideoDirectory.isEmpty())
        LoadDirectoriesFromHarrowfinSetupFile(siblingFile);
    if (gstrMyVideoDirectory.isEmpty())
        gstrMyVideoDirectory = xdgVideos;
    if (gstrMyMusicDirectory.isEmpty())
        gstrMyMusicDirectory = xdgMusic;
    if (gstrMyPicturesDirectory.isEmpty())
        gstrMyPicturesDirectory = xdgPictures;
    if (gstrMyStdPicturesDirectory1.isEmpty())
        gstrMyStdPicturesDirectory1 = gstrMyVideoDirectory;
    if (gstrMyStdPicturesDirectory2.isEmpty())
        gstrMyStdPicturesDirectory2 = gstrMyVideoDirectory;
    gstrMyVideoProjectsDirectory = gstrMyVideoDirectory + QStringLiteral("/MyVideoProjects");
    return problems;
}

} // namespace cq
