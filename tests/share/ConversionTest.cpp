#include "StubProgram.h"
#include "platform/ToolRunner.h"
#include "share/ConversionCommand.h"
#include "share/ConversionJob.h"
#include "share/ConversionPresets.h"
#include "support/LiveProcesses.h"
#include "support/TestAppFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

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

// How a conversion job ended: "converted", "failed" or "cancelled", with its file or detail.
struct JobEnd {
    QString how;
    QString text;
    QList<int> progress;
};

JobEnd RunToEnd(ConversionJob& job, const ToolCommand& command, const QString& output,
                const std::function<void(JobEnd&)>& whileRunning = {}) {
    JobEnd end;
    QObject watcher;
    QObject::connect(&job, &ConversionJob::progress, &watcher,
                     [&](int percent) { end.progress << percent; });
    QObject::connect(&job, &ConversionJob::converted, &watcher, [&](const QString& file) {
        end.how = "converted";
        end.text = file;
    });
    QObject::connect(&job, &ConversionJob::failed, &watcher, [&](const QString& detail) {
        end.how = "failed";
        end.text = detail;
    });
    QObject::connect(&job, &ConversionJob::cancelled, &watcher, [&] { end.how = "cancelled"; });
    EXPECT_TRUE(job.start(command, output));
    EXPECT_TRUE(end.how.isEmpty()) << "ended inside start()";
    if (whileRunning)
        whileRunning(end);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !end.how.isEmpty(); }, 60000));
    return end;
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
        const JobEnd end =
            RunToEnd(job,
                     ConvertFileForCellPhones(Ffmpeg(), input, output, c.preset,
                                              {c.format, c.frameSize, "", "", "", "", ""}),
                     output);
        ASSERT_EQ(end.how, "converted") << end.text.toStdString();
        EXPECT_EQ(end.text, output);
        EXPECT_EQ(end.progress.value(0), 0);
        EXPECT_EQ(end.progress.last(), 100);
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

TEST(ConversionJob, CancelStopsFfmpegAndLeavesNoUnfinishedFile) {
    ASSERT_FALSE(Ffmpeg().isEmpty());
    QTemporaryDir dir;
    const QString output = dir.path() + "/FinalMix.MPG";
    ConversionJob job;
    // A real-time source that would run for a minute, written to a real file.
    const ToolCommand command{
        Ffmpeg(),
        {"-nostdin", "-re", "-f", "lavfi", "-i", "testsrc=duration=60", "-y", "file:" + output}};
    const JobEnd end = RunToEnd(job, command, output, [&](JobEnd&) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo(output).size() > 0; }, 20000));
        job.cancel();
    });
    EXPECT_EQ(end.how, "cancelled");
    EXPECT_FALSE(job.isRunning());
    EXPECT_FALSE(QFile::exists(output));
    EXPECT_EQ(test::ProcessesMentioning(output.toUtf8(), QCoreApplication::applicationPid()),
              QList<qint64>());
}

TEST(ConversionJob, AFailedRunOrAMissingToolEndsWithFailedAndNoFile) {
    QTemporaryDir dir;
    const QString output = dir.path() + "/FinalMix.MP4";
    test::WriteFile(output, "left by an earlier conversion");
    ConversionJob job;
    JobEnd end = RunToEnd(job, {Ffmpeg(), {"-nostdin", "-i", "file:/no/such.avi", output}}, output);
    EXPECT_EQ(end.how, "failed");
    EXPECT_TRUE(end.text.contains("/no/such.avi")) << end.text.toStdString();
    EXPECT_FALSE(QFile::exists(output)); // the earlier file does not pass for this one's
    end = RunToEnd(job, {dir.path() + "/no-ffmpeg", {}}, output);
    EXPECT_EQ(end.how, "failed");
    // A tool that exits well without writing its file has not converted anything.
    end = RunToEnd(job, {"/bin/true", {}}, output);
    EXPECT_EQ(end.how, "failed");
    // A clip that is a link to a device or a FIFO never reaches ffmpeg, which would read it
    // for good.
    const QString zero = dir.path() + "/FinalMix.avi";
    ASSERT_TRUE(QFile::link("/dev/zero", zero));
    end = RunToEnd(job, ConvertFileForCellPhones(Ffmpeg(), zero, output, "", {}), output);
    EXPECT_EQ(end.how, "failed");
    EXPECT_TRUE(end.text.contains(zero) && end.text.contains("a device")) << end.text.toStdString();
    const QString fifo = dir.path() + "/Clip.avi";
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0644), 0);
    end = RunToEnd(job, ConvertFileForCellPhones(Ffmpeg(), fifo, output, "", {}), output);
    EXPECT_EQ(end.how, "failed");
    EXPECT_TRUE(end.text.contains("a FIFO")) << end.text.toStdString();
    EXPECT_TRUE(QDir(dir.path()).entryList({"cq-run-*"}, QDir::AllEntries).isEmpty());
}
