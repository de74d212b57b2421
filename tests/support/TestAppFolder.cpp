#include "support/TestAppFolder.h"

#include "studio/AppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace cq::test {

TestAppFolder::TestAppFolder(bool seed) {
    if (seed) {
        EXPECT_TRUE(SeedAppFolder(QStringLiteral(CQ_BUILD_APP_DIR), m_dir.path()));
    }
    qputenv("HOME", m_home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", (m_home.path() + QStringLiteral("/.config")).toUtf8());
    qputenv("XDG_DATA_HOME", (m_home.path() + QStringLiteral("/.local/share")).toUtf8());
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    f.write(bytes);
}

bool MakeMedia(const QStringList& ffmpegArguments) {
    QProcess ffmpeg;
    ffmpeg.start(QStandardPaths::findExecutable(QStringLiteral("ffmpeg")),
                 QStringList{"-nostdin", "-v", "error", "-y"} + ffmpegArguments);
    return ffmpeg.waitForFinished(120000) && ffmpeg.exitStatus() == QProcess::NormalExit &&
           ffmpeg.exitCode() == 0;
}

} // namespace cq::test
