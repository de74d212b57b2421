#include "StubProgram.h"
#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"
#include "share/ConversionJob.h"
#include "share/ConversionPresets.h"
#include "support/TestAppFolder.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace cq;

namespace {

struct Probe {
    QString formatName;
    QStringList videoCodecs, audioCodecs;
    int width = 0, height = 0;
    double seconds = 0;
};

Probe ProbeFile(const QString& file) {
    ToolRunner runner;
    const RunResult run = runner.runProgram(
        "ffprobe", {"-v", "error", "-show_entries",
                    "stream=codec_type,codec_name,width,height:format=format_name,duration", "-of",
                    "json", "file:" + file});
    Probe probe;
    if (!run.ok())
        return probe;
    const QJsonObject root = QJsonDocument::fromJson(runner.standardOutput()).object();
    probe.formatName = root["format"]["format_name"].toString();
    probe.seconds = root["format"]["duration"].toString().toDouble();
    for (const QJsonValue& s : root["streams"].toArray()) {
        if (s["codec_type"] == "video") {
            probe.videoCodecs << s["codec_name"].toString();
            probe.width = s["width"].toInt();
            probe.height = s["height"].toInt();
        } else if (s["codec_type"] == "audio") {
            probe.audioCodecs << s["codec_name"].toString();
        }
    }
    return probe;
}

// A small clip like the rendered one: MPEG-4 video and MP3 sound in AVI.
QString MakeClip(const QString& file) {
    ToolRunner runner;
    const RunResult run =
        runner.runProgram("ffmpeg", {"-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                                     "testsrc=size=160x120:rate=15:duration=2", "-f", "lavfi", "-i",
                                     "sine=frequency=440:sample_rate=44100:duration=2", "-c:v",
                                     "mpeg4", "-c:a", "libmp3lame", "-shortest", "file:" + file});
    return run.ok() ? file : QString();
}

struct Case {
    QString preset;
    QString format;
    QString frameSize;
    QString container; // a name ffprobe lists for it
    QString video;     // empty: no video stream
    QString audio;
    int width, height;
};

QString Ffmpeg() {
    return QStandardPaths::findExecutable("ffmpeg");
}

// How a conversion ended; progress, when given, gets what it told on the way.
JobEnd Convert(ConversionJob& job, const ToolCommand& command, const QString& output,
               QList<int>* progress = nullptr) {
    QObject watcher;
    if (progress)
        QObject::connect(&job, &ConversionJob::progressed, &watcher,
                         [progress](int percent) { *progress << percent; });
    EXPECT_TRUE(job.start(command, output));
    EXPECT_TRUE(job.isRunning()) << "ended inside start()";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !job.isRunning(); }, 60000));
    return job.lastEnd();
}

} // namespace

TEST(ConversionCommand, SizeCaptionsAreNormalisedAndBadSizesIgnored) {
    EXPECT_EQ(NormalizeFrameSize("160x120 "), "160x120");
    EXPECT_EQ(NormalizeFrameSize("320X240"), "320x240");
    for (const QString bad : {"", "Other", "641x480", "0x0", "640x480; rm -rf /", "99999x2"})
        EXPECT_TRUE(NormalizeFrameSize(bad).isEmpty()) << bad.toStdString();
    ConversionSettings mp4;
    mp4.outputFormat = "MP4";
    mp4.frameSize = "160x120 ";
    const QStringList args =
        ConvertFileForCellPhones("ffmpeg", "/w/a.avi", "/w/a.MP4", "", mp4).arguments;
    EXPECT_EQ(args.at(args.indexOf("-s") + 1), "160x120");
}

TEST(ConversionCommand, OutputNameChangesOnlyTheFilesOwnExtension) {
    EXPECT_EQ(ConvertedFileSpec("/w/My.Clips/FinalMix.avi", "MP4"), "/w/My.Clips/FinalMix.MP4");
    EXPECT_EQ(ConvertedFileSpec("/w/v1.2/clip", "3GP"), "/w/v1.2/clip.3GP");
}

// Every format of the window and every ring tone, converted for real from a clip whose folder
// name would run commands if it ever reached a shell unquoted.
TEST(ConversionJob, EveryFormatConvertsAndHoldsTheExpectedStreams) {
    ASSERT_FALSE(Ffmpeg().isEmpty());
    QTemporaryDir dir;
    const QString folder = dir.path() + "/it's $(touch pwned) `touch pwned2` \"q\"; -x";
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString input = MakeClip(folder + "/FinalMix.avi");
    ASSERT_FALSE(input.isEmpty());

    const QList<Case> cases{
        {"", "AVI", "320x240", "avi", "mpeg4", "mp3", 320, 240},
        {"", "FLV", "480x320", "flv", "flv1", "mp3", 480, 320},
        {"Apple Iphone 3G", "MP4", "480x320", "mp4", "h264", "aac", 480, 320},
        {"", "MPG", "352x288", "mpeg", "mpeg1video", "mp2", 352, 288},
        {"Regular Cellphone (3GP format)", "3GP", "176x144", "3gp", "h263", "aac", 176, 144},
        // A size H.263 cannot code goes to MPEG-4, which 3GP carries as well.
        {"", "3GP", "320x240", "3gp", "mpeg4", "aac", 320, 240},
        {"", "MOV", "320x240", "mov", "h264", "aac", 320, 240},
        {"Regular Cellphone (WMV format)", "WMV", "176x144", "asf", "wmv2", "wmav2", 176, 144},
        {"", "MP3", "", "mp3", "", "mp3", 0, 0},
        {"", "WAV", "", "wav", "", "pcm_s16le", 0, 0},
        {"", "M4A", "", "m4a", "", "aac", 0, 0},
        {"Ringtones (3GP)", "3GP", "", "3gp", "", "aac", 0, 0},
        {"Ringtones (WMV)", "WMV", "", "asf", "", "wmav2", 0, 0},
        {"Ringtones (MP4)", "MP4", "", "mp4", "", "aac", 0, 0},
        {"Ringtones (MP3)", "MP3", "", "mp3", "", "mp3", 0, 0},
    };
    ConversionJob job;
    for (const Case& c : cases) {
        SCOPED_TRACE((c.preset + " " + c.format).toStdString());
        const QString output = ConvertedFileSpec(input, c.format);
        QList<int> progress;
        const JobEnd end =
            Convert(job,
                    ConvertFileForCellPhones(Ffmpeg(), input, output, c.preset,
                                             {c.format, c.frameSize, "", "", "", "", ""}),
                    output, &progress);
        ASSERT_TRUE(end.isDone()) << end.message.toStdString();
        EXPECT_EQ(job.output(), output);
        EXPECT_EQ(progress.value(0), 0);
        EXPECT_EQ(progress.last(), 100);
        const Probe probe = ProbeFile(output);
        EXPECT_TRUE(probe.formatName.split(',').contains(c.container))
            << probe.formatName.toStdString();
        EXPECT_EQ(probe.videoCodecs, c.video.isEmpty() ? QStringList() : QStringList{c.video});
        EXPECT_EQ(probe.audioCodecs, QStringList{c.audio});
        EXPECT_EQ(probe.width, c.width);
        EXPECT_EQ(probe.height, c.height);
        EXPECT_NEAR(probe.seconds, 2.0, 0.3);
    }
    EXPECT_FALSE(QFile::exists(dir.path() + "/pwned"));
    EXPECT_FALSE(QFile::exists(QDir::currentPath() + "/pwned"));
    EXPECT_FALSE(QFile::exists(QDir::currentPath() + "/pwned2"));
}

TEST(ConversionJob, AFailedRunOrAMissingToolEndsWithFailedAndNoFile) {
    QTemporaryDir dir;
    const QString output = dir.path() + "/FinalMix.MP4";
    test::WriteFile(output, "left by an earlier conversion");
    ConversionJob job;
    JobEnd end = Convert(job, {Ffmpeg(), {"-nostdin", "-i", "file:/no/such.avi", output}}, output);
    EXPECT_TRUE(end.isFailed());
    EXPECT_TRUE(end.message.contains("/no/such.avi")) << end.message.toStdString();
    EXPECT_FALSE(QFile::exists(output)); // the earlier file does not pass for this one's
    end = Convert(job, {dir.path() + "/no-ffmpeg", {}}, output);
    EXPECT_TRUE(end.isFailed());
    // A tool that exits well without writing its file has not converted anything.
    end = Convert(job, {"/bin/true", {}}, output);
    EXPECT_TRUE(end.isFailed());
    // A clip that is a link to a device or a FIFO never reaches ffmpeg, which would read it
    // for good.
    const QString zero = dir.path() + "/FinalMix.avi";
    ASSERT_TRUE(QFile::link("/dev/zero", zero));
    end = Convert(job, ConvertFileForCellPhones(Ffmpeg(), zero, output, "", {}), output);
    EXPECT_TRUE(end.isFailed());
    EXPECT_TRUE(end.message.contains(zero) && end.message.contains("a device"))
        << end.message.toStdString();
    const QString fifo = dir.path() + "/Clip.avi";
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0644), 0);
    end = Convert(job, ConvertFileForCellPhones(Ffmpeg(), fifo, output, "", {}), output);
    EXPECT_TRUE(end.isFailed());
    EXPECT_TRUE(end.message.contains("a FIFO")) << end.message.toStdString();
    EXPECT_TRUE(QDir(dir.path()).entryList({"cq-run-*"}, QDir::AllEntries).isEmpty());
}
