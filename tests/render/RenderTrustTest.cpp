// Renders under the conditions a user meets: a full disk, a piece damaged after it was made, two
// renders at once, a result that fails its check, pieces of older timelines, hostile sizes.
#include "RenderFixture.h"

#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"
#include "render/AviContents.h"
#include "support/FileSizeLimit.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {

QStringList filesIn(const QString& folder, const QString& pattern) {
    return QDir(folder).entryList({pattern}, QDir::Files);
}

} // namespace

TEST_F(RenderEndToEnd, AFullDiskLeavesNoPieceThatCountsAndKeepsThePreviousResult) {
    const QString voice = makeVoice(3.0);
    const QString busy = mediaFile("busy.jpg");
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "testsrc2=s=1280x720", "-frames:v", "1", "-update",
                           "1", "-q:v", "2", "-y", busy}));
    studio.gstrVideoRes = QStringLiteral("640X480");
    const QByteArray previous("the previous render");
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, previous);
    const RenderInputs in = inputsFor({Event(MediaKind::Pictures, 0, busy)}, voice);

    RenderReport full;
    {
        const test::FileSizeLimit limit(12 * 1024);
        full = render(in);
    }
    EXPECT_EQ(full.outcome, RenderReport::Outcome::Failed);
    // The user learns that space ran out, and where; not that some piece is damaged.
    EXPECT_TRUE(full.message.contains("lack of space")) << full.message.toStdString();
    EXPECT_TRUE(full.message.contains(paths.gstrTempFilesDirectory)) << full.message.toStdString();
    EXPECT_FALSE(full.message.contains("damaged")) << full.message.toStdString();
    EXPECT_EQ(ReadFileToBytes(paths.gstrFinalMixAVIFileSpec), previous);
    // Whatever is in the work space with a key is whole.
    const QString space = paths.gstrTempFilesDirectory + "/Render1";
    for (const QString& key : filesIn(space, "*.key")) {
        const QString piece = space + "/" + key.left(key.size() - 4) + ".avi";
        EXPECT_TRUE(ReadAviContents(piece).complete) << piece.toStdString();
    }

    // With room again, the picture is made afresh: no cut-short piece is reused.
    const RenderReport again = render(in);
    ASSERT_TRUE(again.ok()) << again.message.toStdString();
    EXPECT_EQ(again.reusedPieces, 0);
    EXPECT_NE(ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, 1.5)), "black");
}

// The same limit set on the studio from its shell (ulimit -f): its tools' writes fail and the user
// learns that space ran out, rather than the tools, or the studio, being ended by the signal.
TEST_F(RenderEndToEnd, AFileSizeLimitOnTheStudioIsReportedAsLackOfSpace) {
    const QString project = mediaFile("project");
    ASSERT_TRUE(QDir().mkpath(project));
    ASSERT_TRUE(media.voice(project + "/RecordedAudio.wav", 3.0));
    ASSERT_TRUE(media.run({"-f", "lavfi", "-i", "testsrc2=s=1280x720", "-frames:v", "1", "-update",
                           "1", "-q:v", "2", "-y", project + "/busy.jpg"}));
    ASSERT_TRUE(WriteWholeFile("1\tPictures\t0.000\t\tbusy.jpg\r\n", project + "/Timeline.txt"));
    const QStringList render{CQ_STUDIO_EXECUTABLE, "--app-dir", paths.appFolder, "--render",
                             project + "/Timeline.txt"};
    ToolRunner runner;
    // The application folder is filled on first use, without the limit.
    const RunResult first = runner.runProgram(render.first(), render.mid(1));
    ASSERT_TRUE(first.ok()) << first.errorText.toStdString();

    const RunResult limited =
        runner.runProgram("/bin/sh", QStringList{"-c", "ulimit -f 24\nexec \"$@\"", "sh"} + render +
                                         QStringList{"--size", "640X480"});
    EXPECT_EQ(limited.exitCode, 1);
    expectLackOfSpace(limited.errorText);
}

// ffmpeg ends well after it failed to write the end of the voice's sound ("Error writing
// trailer: File too large"); the sound is read back, and the user learns that space ran out.
TEST_F(RenderEndToEnd, AVoiceSoundCutShortByAFileSizeLimitIsReportedAsLackOfSpace) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 12.0, 0);
    studio.renderFormat = RenderFormat::Mp4;
    const RenderInputs in = inputsFor(rows, voice);
    RenderReport limited;
    {
        const test::FileSizeLimit limit(64 * 1024); // room for the pieces, not for 12 s of sound
        limited = render(in);
    }
    EXPECT_EQ(limited.outcome, RenderReport::Outcome::Failed);
    expectLackOfSpace(limited.message);
    EXPECT_FALSE(limited.message.contains("moov")) << limited.message.toStdString();
    EXPECT_TRUE(filesIn(paths.gstrTempFilesDirectory + "/Render1", "VoiceSound-*").isEmpty());

    const RenderReport roomy = render(in);
    ASSERT_TRUE(roomy.ok()) << roomy.message.toStdString();
    EXPECT_NEAR(roomy.audioMs, 12000, 100);
}

// The same for the join: its result may not grow past the limit, though the voice's sound and the
// pieces, kept from a render before, are there already.
TEST_F(RenderEndToEnd, AResultCutShortByAFileSizeLimitIsReportedAsLackOfSpace) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 6.0, 0);
    studio.renderFormat = RenderFormat::Mp4;
    const RenderInputs in = inputsFor(rows, voice);
    const RenderReport roomy = render(in);
    ASSERT_TRUE(roomy.ok()) << roomy.message.toStdString();
    const QString space = paths.gstrTempFilesDirectory + "/Render1";
    const QStringList sounds = filesIn(space, "VoiceSound-*");
    ASSERT_EQ(sounds.size(), 1);
    const qint64 sound = QFileInfo(space + "/" + sounds.first()).size();
    const qint64 result = QFileInfo(roomy.output).size();
    ASSERT_GT(result, sound + 1024);
    RenderReport limited;
    {
        const test::FileSizeLimit limit(rlim_t(sound + result) / 2);
        limited = render(in);
    }
    EXPECT_EQ(limited.outcome, RenderReport::Outcome::Failed);
    expectLackOfSpace(limited.message);
}

TEST_F(RenderEndToEnd, APieceDamagedAfterItWasMadeIsMadeAgain) {
    const QString voice = makeVoice(3.0);
    const RenderInputs in = inputsFor(pictureRows("p", {"red", "blue", "red"}), voice);
    RenderJob first(in, pool);
    ASSERT_TRUE(first.runToEnd().ok());

    // A crash or a disk error cuts the blue piece short after its key was written.
    QFile piece(first.plan().segments[1].piece);
    ASSERT_TRUE(piece.exists());
    ASSERT_TRUE(piece.resize(piece.size() / 2));

    const RenderReport again = render(in);
    ASSERT_TRUE(again.ok()) << again.message.toStdString();
    EXPECT_EQ(again.reusedPieces, 2);
    EXPECT_TRUE(again.failedItems.isEmpty());
    expectSequence(paths.gstrFinalMixAVIFileSpec, {{0.0, "red"}, {1.0, "blue"}, {2.0, "red"}});
}

TEST_F(RenderEndToEnd, TwoRendersAtOnceInOneFolderBothComeOutRight) {
    const QString voice = makeVoice(3.0);
    // The same output too: each result is complete, whichever lands last.
    RenderJob red(inputsFor(pictureRows("red", {"red", "red", "red"}, 1000, {320, 240}, 2), voice),
                  pool);
    RenderJob blue(
        inputsFor(pictureRows("blue", {"blue", "blue", "blue"}, 1000, {320, 240}, 2), voice), pool);
    int open = 2;
    QEventLoop loop;
    for (RenderJob* job : {&red, &blue})
        QObject::connect(job, &RenderJob::ended, &loop, [&] {
            if (--open == 0)
                loop.quit();
        });
    red.start();
    blue.start();
    loop.exec();
    ASSERT_TRUE(red.report().ok()) << red.report().message.toStdString();
    ASSERT_TRUE(blue.report().ok()) << blue.report().message.toStdString();
    EXPECT_NE(red.space().folder, blue.space().folder);
    const QString shown = ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, 0.5));
    for (double at : {1.5, 2.5})
        EXPECT_EQ(ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, at)), shown);
    EXPECT_NEAR(media.duration(paths.gstrFinalMixAVIFileSpec, "video"), 3.0, 0.2);
    EXPECT_TRUE(filesIn(QFileInfo(paths.gstrFinalMixAVIFileSpec).path(), "*.rendering*").isEmpty());
}

TEST_F(RenderEndToEnd, AResultOfTheWrongLengthNeverReplacesThePreviousOne) {
    const QString voice = makeVoice(2.0);
    const QString red = makePicture("red.jpg", "red");
    const QByteArray previous("the previous render");
    test::WriteFile(paths.gstrFinalMixAVIFileSpec, previous);
    // The recording says 4 s, the voice holds 2 s: the result cannot match.
    RenderInputs in = inputsFor({Event(MediaKind::Pictures, 0, red)}, voice);
    in.recordingMs = 4000;
    RenderJob job(in, pool);
    QList<RenderJob::Step> steps;
    QObject::connect(&job, &RenderJob::stepStarted, [&](RenderJob::Step s) { steps << s; });
    const RenderReport report = job.runToEnd();
    EXPECT_EQ(report.outcome, RenderReport::Outcome::Failed);
    ASSERT_FALSE(steps.isEmpty());
    EXPECT_EQ(steps.last(), RenderJob::Step::Verify); // never published
    EXPECT_EQ(ReadFileToBytes(paths.gstrFinalMixAVIFileSpec), previous);
    EXPECT_TRUE(report.message.contains("2.0")) << report.message.toStdString();
    EXPECT_TRUE(report.message.contains(paths.gstrFinalMixAVIFileSpec));
    EXPECT_TRUE(QFileInfo::exists(report.logFile));
}

TEST_F(RenderEndToEnd, PiecesOfOlderTimelinesGoAfterASuccessfulRender) {
    const QString voice = makeVoice(3.0);
    auto timeline = [&](const QString& colour) {
        return pictureRows(colour, {colour, colour, colour}, 1000, {300, 200}, 2);
    };
    const QString space = paths.gstrTempFilesDirectory + "/Render1";
    ASSERT_TRUE(render(inputsFor(timeline("red"), voice)).ok());
    EXPECT_EQ(filesIn(space, "*.avi").size(), 3);
    const RenderReport second = render(inputsFor(timeline("blue"), voice));
    ASSERT_TRUE(second.ok()) << second.message.toStdString();
    EXPECT_EQ(second.removedOldFiles, 6); // three pieces and their keys
    EXPECT_EQ(filesIn(space, "*.avi").size(), 3);
    EXPECT_EQ(filesIn(space, "*.key").size(), 3);
    EXPECT_TRUE(filesIn(space, "*.part").isEmpty());
}

TEST_F(RenderEndToEnd, WidePicturesKeepTheirShapeAtAWideSize) {
    const QString voice = makeVoice(2.0);
    const QString wide = makePicture("wide.jpg", "red", 1920, 1080);
    studio.gstrVideoRes = QStringLiteral("320X180");
    ASSERT_TRUE(render(inputsFor({Event(MediaKind::Pictures, 0, wide)}, voice)).ok());
    // A 4:3 canvas stretched to 16:9 would leave black bands at the top and the bottom.
    EXPECT_EQ(ColourName(media.colourAtPoint(paths.gstrFinalMixAVIFileSpec, 1.0, 160, 4)), "red");
    EXPECT_EQ(ColourName(media.colourAtPoint(paths.gstrFinalMixAVIFileSpec, 1.0, 160, 172)), "red");
}

TEST_F(RenderEndToEnd, HostileCommandLineValuesAreRefusedAtOnce) {
    const QString folder = redPictureProject(1.0, "0.000");
    // A program named like the second half of a size, first on PATH.
    const QString bin = app.file("bin");
    QDir().mkpath(bin);
    const QString marker = app.file("RAN");
    ASSERT_TRUE(SaveBytesToFile("#!/bin/sh\ntouch '" + marker.toUtf8() + "'", bin + "/240"));
    QFile(bin + "/240").setPermissions(QFile::ExeOwner | QFile::ReadOwner);
    const QString fifo = app.file("voice.wav");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);

    auto run = [&](const QStringList& extra) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        qputenv("PATH", (bin + ":" + env.value("PATH")).toUtf8());
        const RunResult r = runStudio(QStringList{"--render", folder + "/Timeline.txt"} + extra);
        qputenv("PATH", env.value("PATH").toUtf8());
        return r;
    };
    for (const QString& size : {QStringLiteral("320x\n240"), QStringLiteral("320X 240"),
                                QStringLiteral("320X240\n"), QStringLiteral("320X240;240")}) {
        const RunResult r = run({"--size", size});
        EXPECT_EQ(r.exitCode, 2) << size.toStdString();
        EXPECT_TRUE(r.errorText.contains("not a frame size")) << r.errorText.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(marker));

    // A FIFO as voice is refused without waiting for a writer.
    QElapsedTimer clock;
    clock.start();
    const RunResult r = run({"--voice", fifo});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_LT(clock.elapsed(), 20000);
    EXPECT_TRUE(r.errorText.contains("not a regular file")) << r.errorText.toStdString();
    EXPECT_FALSE(r.errorText.contains("Render log")) << r.errorText.toStdString();
}

// No tool is ever handed a FIFO (it would wait for a writer), a device or a folder: such an item
// shows black with the reason at once, like an unreadable file, also when its sound is asked for.
TEST_F(RenderEndToEnd, SourcesThatAreNoRegularFilesShowBlackAtOnce) {
    const QString voice = makeVoice(4.0);
    const QString red = makePicture("red.jpg", "red");
    const QString fifo = mediaFile("fifo.jpg");
    const QString fifoVideo = mediaFile("fifo.avi");
    const QString folder = mediaFile("folder.avi");
    for (const QString& f : {fifo, fifoVideo})
        ASSERT_EQ(mkfifo(QFile::encodeName(f).constData(), 0600), 0);
    ASSERT_TRUE(QDir().mkpath(folder));
    studio.keepVideoSound = true;
    const RenderInputs in =
        inputsFor({Event(MediaKind::Pictures, 0, red), Event(MediaKind::Pictures, 1000, fifo),
                   Event(MediaKind::Video, 2000, fifoVideo), Event(MediaKind::Video, 3000, folder)},
                  voice);
    QElapsedTimer clock;
    clock.start();
    const RenderReport report = render(in);
    ASSERT_EQ(report.outcome, RenderReport::Outcome::Done) << report.message.toStdString();
    EXPECT_LT(clock.elapsed(), 30000);
    EXPECT_EQ(report.failedItems, QStringList({fifo, fifoVideo, folder}));
    EXPECT_TRUE(report.message.contains("FIFO")) << report.message.toStdString();
    EXPECT_TRUE(report.message.contains("folder")) << report.message.toStdString();
    expectSequence(paths.gstrFinalMixAVIFileSpec,
                   {{0.0, "red"}, {1.0, "black"}, {2.0, "black"}, {3.0, "black"}});
}

// ffmpeg reads its list of pieces line by line: a line end in the work folder's name must not
// split a piece's line.
TEST_F(RenderEndToEnd, AWorkFolderWithALineEndInItsNameRenders) {
    const QString voice = makeVoice(2.0);
    const QString red = makePicture("red.jpg", "red");
    const QString blue = makePicture("blue.jpg", "blue");
    RenderInputs in = inputsFor(
        {Event(MediaKind::Pictures, 0, red), Event(MediaKind::Pictures, 1000, blue)}, voice);
    in.workFolder = app.file("Clip\nquill 'x'/ClipquillTempFiles");
    in.output = in.workFolder + "/FinalMix.avi";
    const RenderReport report = render(in);
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    expectSequence(in.output, {{0.0, "red"}, {1.0, "blue"}});
}
