#include "RenderFixture.h"

#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"
#include "render/Mp4Container.h"
#include "render/Mp4Contents.h"
#include "studio/FinalMix.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {

// "codec pixel-format" of every stream, in order: "h264 yuv420p", "aac ".
QStringList streamsOf(const QString& ffprobe, const QString& file) {
    ToolRunner runner;
    runner.runProgram(ffprobe, {"-v", "error", "-show_entries", "stream=codec_name,pix_fmt", "-of",
                                "csv=p=0:s=\\ ", file});
    return QString::fromUtf8(runner.standardOutput()).trimmed().split(u'\n');
}

// The settings the encoder wrote into the stream, "... options: cabac=1 ref=1 ...".
QString encoderOptions(const QString& file) {
    const QByteArray bytes = ReadFileToBytes(file);
    const qsizetype at = bytes.indexOf("options: ");
    if (at < 0)
        return {};
    return QString::fromLatin1(bytes.mid(at, bytes.indexOf('\0', at) - at));
}

// The stream header (avcC) of an MP4 file's video track.
QByteArray streamHeader(const QString& file) {
    const QByteArray bytes = ReadFileToBytes(file);
    const qsizetype at = bytes.indexOf("avcC");
    if (at < 4)
        return {};
    return bytes.mid(at, qFromBigEndian<quint32>(bytes.constData() + at - 4) - 4);
}

} // namespace

class Mp4Render : public RenderEndToEnd {
protected:
    Mp4Render() { studio.renderFormat = RenderFormat::Mp4; }
};

TEST_F(Mp4Render, H264AndAacWithTheIndexFirstAndEveryItemAtItsTime) {
    studio.keepVideoSound = true;
    const RenderInputs in = threeItemTake();
    RenderJob job(in, pool);
    const RenderReport report = job.runToEnd();
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    const QString out = paths.gstrFinalMixMP4FileSpec;
    // Pictures and videos alike, the pieces share one stream header, which the join keeps.
    const QStringList pieces = job.plan().distinctPieces();
    ASSERT_EQ(pieces.size(), 4);
    for (const QString& piece : pieces)
        EXPECT_EQ(streamHeader(piece).toHex(), streamHeader(out).toHex()) << piece.toStdString();
    ASSERT_EQ(report.output, out);
    EXPECT_EQ(LatestFinalMix(paths), out);

    EXPECT_EQ(streamsOf(LocateFfprobe(paths), out), QStringList({"h264 yuv420p", "aac"}));
    const Mp4Contents boxes = ReadMp4Contents(out);
    ASSERT_TRUE(boxes.complete) << boxes.problem.toStdString();
    EXPECT_TRUE(boxes.moovBeforeMdat);
    // preset veryfast: one reference, subpel level 2, hexagon search, no trellis; CRF 23.
    const QString options = encoderOptions(out);
    for (const char* setting : {"crf=23.0", "ref=1", "subme=2", "me=hex", "trellis=0"})
        EXPECT_TRUE(options.contains(QLatin1String(setting))) << setting << options.toStdString();

    // Both streams last as long as the voice, to within a frame.
    EXPECT_NEAR(boxes.durationMs("vide"), 4000, 34);
    EXPECT_NEAR(boxes.durationMs("soun"), 4000, 24);
    EXPECT_NEAR(media.duration(out, "video"), 4.0, 0.034);
    const QList<std::pair<double, QString>> shown{{0.45, "black"}, {0.54, "red"},   {1.45, "red"},
                                                  {1.54, "green"}, {2.45, "green"}, {2.54, "blue"},
                                                  {3.9, "blue"}};
    for (const auto& [at, colour] : shown)
        EXPECT_EQ(ColourName(media.colourShownAt(out, at)), colour) << at;
    EXPECT_GT(media.bandLevel(out, 1.8, 0.5, 1000), -35); // the video's own sound

    // Frames stand on whole frame steps; a still is four frames however long it is held.
    const double step = 1001.0 / 30000.0;
    const QList<double> times = media.frameTimes(out);
    ASSERT_FALSE(times.isEmpty());
    EXPECT_NEAR(times.first(), 0, 1e-6);
    for (double t : times)
        ASSERT_NEAR(t / step, std::round(t / step), 0.01) << t;
    EXPECT_EQ(times.size(), 4 + 4 + std::llround(1.0 / step) + 4);
    // Converted at a constant rate, as for phones, it keeps its length.
    const QString phone = app.file("phone.avi");
    ASSERT_TRUE(media.run({"-i", out, "-fps_mode", "cfr", "-r", "25", "-c:v", "mpeg4", phone}));
    EXPECT_NEAR(media.duration(phone, "video"), 4.0, 0.1);

    const RenderReport again = render(in);
    ASSERT_TRUE(again.ok()) << again.message.toStdString();
    EXPECT_EQ(again.reusedPieces, 4);
}

TEST_F(Mp4Render, AnAviRenderAfterwardsIsTheLatestResult) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 1.0, 0);
    ASSERT_TRUE(render(inputsFor(rows, voice)).ok());
    EXPECT_EQ(LatestFinalMix(paths), paths.gstrFinalMixMP4FileSpec);
    studio.renderFormat = RenderFormat::Avi;
    // The file times of the two results must differ for the newer one to be told apart.
    QFile(paths.gstrFinalMixMP4FileSpec)
        .setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime);
    const RenderReport avi = render(inputsFor(rows, voice));
    ASSERT_TRUE(avi.ok()) << avi.message.toStdString();
    EXPECT_EQ(avi.output, paths.gstrFinalMixAVIFileSpec);
    EXPECT_EQ(LatestFinalMix(paths), paths.gstrFinalMixAVIFileSpec);
}

TEST_F(Mp4Render, OutputExtensionPicksTheFormatAndAnyOtherIsRefused) {
    const QString voice = makeVoice(1.0);
    const QList<TimelineEvent> rows{Event(MediaKind::Pictures, 0, mediaFile("red.jpg"))};
    auto request = [&](const QString& output) {
        return StudioRenderRequest(paths, studio, rows, voice, 1000, output);
    };
    EXPECT_EQ(request(app.file("x.MP4")).inputs.container->suffix(), "mp4");
    studio.renderFormat = RenderFormat::Avi;
    EXPECT_EQ(request(app.file("x.mp4")).inputs.container->suffix(), "mp4");
    EXPECT_EQ(request({}).inputs.output, paths.gstrFinalMixAVIFileSpec);
    studio.renderFormat = RenderFormat::Mp4;
    EXPECT_EQ(request(app.file("x.avi")).inputs.container->suffix(), "avi");
    EXPECT_EQ(request({}).inputs.output, paths.gstrFinalMixMP4FileSpec);
    for (const QString name : {"x.mkv", "x", "x.mp4.txt", "x.mp3"}) {
        const RenderRequest refused = request(app.file(name));
        EXPECT_FALSE(refused.ok()) << name.toStdString();
        EXPECT_TRUE(refused.problem.contains(".mp4")) << refused.problem.toStdString();
    }
    // A take without events is sound only, which may also be an MP3.
    EXPECT_TRUE(StudioRenderRequest(paths, studio, {}, voice, 1000, app.file("x.mp3")).ok());

    // From the command line, the refusal comes before anything is written.
    const QString folder = redPictureProject(1.0, "0.000");
    const RunResult r =
        runStudio({"--render", folder + "/Timeline.txt", "--output", app.file("out.webm")});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.errorText.contains("out.webm")) << r.errorText.toStdString();
    EXPECT_FALSE(QFileInfo::exists(app.file("out.webm")));
    EXPECT_TRUE(QDir(paths.gstrTempFilesDirectory).isEmpty());

    // A result whose subtitle files would land on the take's or the project's own captions.
    const QByteArray mine("1\n00:00:00,000 --> 00:00:01,000\nmine\n");
    for (const QString& kept : {folder, paths.gstrTempFilesDirectory}) {
        ASSERT_TRUE(QDir().mkpath(kept));
        ASSERT_TRUE(WriteWholeFile(mine, kept + "/Captions.srt"));
        const RunResult clash =
            runStudio({"--render", folder + "/Timeline.txt", "--output", kept + "/Captions.mp4"});
        EXPECT_EQ(clash.exitCode, 2) << kept.toStdString();
        EXPECT_TRUE(clash.errorText.contains("Captions.srt")) << clash.errorText.toStdString();
        EXPECT_EQ(ReadFileToBytes(kept + "/Captions.srt"), mine);
    }
}
