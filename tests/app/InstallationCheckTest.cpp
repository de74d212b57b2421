#include "StudioProcess.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// --check with a PATH that holds only links to the named programs.
test::StudioRun checkWithPath(const test::TestAppFolder& app, const QStringList& programs,
                              QMap<QString, QString> environment = {}) {
    const QString bin = app.home() + "/bin";
    QDir(bin).removeRecursively();
    QDir().mkpath(bin);
    for (const QString& name : programs)
        EXPECT_TRUE(QFile::link(QStandardPaths::findExecutable(name), bin + "/" + name))
            << name.toStdString();
    environment.insert("PATH", bin);
    return test::RunStudioProgram({"--app-dir", app.path(), "--check"}, environment);
}

} // namespace

TEST(CheckCommand, FindsToolsAsTheRenderDoesAndNamesWhatTheRenderWouldMiss) {
    test::TestAppFolder app;
    // The tools alone: no shell or utility stands between the studio and them.
    const QStringList all{"ffmpeg", "ffprobe", "convert"};
    test::StudioRun run = checkWithPath(app, all);
    EXPECT_EQ(run.exitCode, 0) << run.out.toStdString() << run.err.toStdString();
    for (const char* tool : {"ffmpeg", "ffprobe", "convert"})
        EXPECT_TRUE(run.out.contains(QString("\n%1: usable (").arg(tool))) << tool;
    for (const char* gone : {"sh", "cat", "mv", "rm"})
        EXPECT_FALSE(run.out.contains(QString("\n%1: ").arg(gone))) << gone;

    // No ffprobe beside ffmpeg in the application folder, and none on PATH.
    QFile::remove(app.file("System/ffprobe"));
    run = checkWithPath(app, {"ffmpeg", "convert"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.contains("\nffprobe: NOT usable (")) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains("ffprobe")) << run.err.toStdString();

    // On PATH it serves, as it does for the render.
    run = checkWithPath(app, all);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains("\nffprobe: usable (")) << run.out.toStdString();
}

TEST(CheckCommand, NamesTheMissingSpeechModelWithoutFailingTheRender) {
    test::TestAppFolder app;
    const QStringList all{"ffmpeg", "ffprobe", "convert"};
    test::StudioRun run = checkWithPath(app, all);
    EXPECT_TRUE(run.out.contains("\nspeech model: usable (")) << run.out.toStdString();

    const QString empty = app.home() + "/no-model";
    QDir().mkpath(empty);
    run = checkWithPath(app, all, {{"CLIPQUILL_SPEECH_MODEL_DIR", empty}});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains("\nspeech model: NOT usable (The English speech model is not "
                                 "installed. Install the Debian package \"pocketsphinx-en-us\"."))
        << run.out.toStdString();
}
