#include "platform/FfmpegOutput.h"
#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "platform/WavFormat.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>
#include <sys/stat.h>

using namespace cq;

namespace {

QString makeWav(const QTemporaryDir& dir, const QString& name, const QStringList& options) {
    const QString file = dir.filePath(name);
    ToolRunner runner;
    const RunResult r = runner.runProgram(
        LocateTool({}, "ffmpeg", "ffmpeg").path,
        QStringList{"-nostdin", "-v", "error", "-f", "lavfi", "-i", "sine=f=440:d=1.5"} + options +
            QStringList{"-y", file});
    EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
    return file;
}

void patch32(const QString& file, qint64 at, quint32 value) {
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    char b[4];
    qToLittleEndian(value, b);
    f.seek(at);
    f.write(b, 4);
}

} // namespace

TEST(WavReader, ReadsEveryPcmFormFfmpegWritesWithItsListChunk) {
    QTemporaryDir dir;
    struct Case {
        const char* name;
        QStringList options;
        int channels;
        int bits;
    };
    const QList<Case> cases{
        {"s16.wav", {"-ac", "1", "-ar", "44100"}, 1, 16},
        {"u8.wav", {"-ac", "1", "-c:a", "pcm_u8"}, 1, 8},
        {"s24.wav", {"-ac", "2", "-ar", "48000", "-c:a", "pcm_s24le"}, 2, 24},
        {"f32.wav", {"-ac", "2", "-c:a", "pcm_f32le"}, 2, 32},
        {"six.wav", {"-ac", "6", "-c:a", "pcm_s16le"}, 6, 16}, // WAVE_FORMAT_EXTENSIBLE
        {"mulaw.wav", {"-ac", "1", "-ar", "8000", "-c:a", "pcm_mulaw"}, 1, 8},
    };
    for (const Case& c : cases) {
        const QString file = makeWav(dir, c.name, c.options);
        // ffmpeg writes a LIST chunk between the format and the samples.
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        EXPECT_TRUE(f.read(200).contains("LIST")) << c.name;
        const WavInfo info = ReadWavInfo(file);
        EXPECT_TRUE(info.ok()) << c.name << ": " << info.error.toStdString();
        EXPECT_EQ(info.channels, c.channels) << c.name;
        EXPECT_EQ(info.bitsPerSample, c.bits) << c.name;
        EXPECT_NEAR(info.durationMs, 1500, 1) << c.name;
        EXPECT_EQ(WavDurationMs(file), info.durationMs) << c.name;
    }
}

TEST(WavReader, RefusesLyingHeadersCompressedSoundAndNonFilesAtOnce) {
    QTemporaryDir dir;
    const QString good =
        makeWav(dir, "good.wav", {"-ac", "1", "-ar", "44100", "-fflags", "+bitexact"});
    ASSERT_EQ(WavDurationMs(good), 1500);

    // A byte rate ten times too small would plan a video ten times too long.
    const QString rate = dir.filePath("rate.wav");
    QFile::copy(good, rate);
    patch32(rate, 28, 8820);
    const WavInfo lying = ReadWavInfo(rate);
    EXPECT_FALSE(lying.ok());
    EXPECT_TRUE(lying.error.contains("byte rate 8820")) << lying.error.toStdString();
    EXPECT_EQ(lying.durationMs, -1);

    // A data size larger than the file: the samples present count, as after a crash.
    const QString cut = dir.filePath("cut.wav");
    QFile::copy(good, cut);
    QFile(cut).resize(44 + 44100);
    EXPECT_EQ(WavDurationMs(cut), 500);

    const QString adpcm = makeWav(dir, "adpcm.wav", {"-ac", "1", "-c:a", "adpcm_ms"});
    EXPECT_TRUE(ReadWavInfo(adpcm).error.contains("compressed"))
        << ReadWavInfo(adpcm).error.toStdString();

    QFile text(dir.filePath("text.wav"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not a wav file at all");
    text.close();
    EXPECT_TRUE(ReadWavInfo(text.fileName()).error.contains("RIFF WAVE"));

    const QString fifo = dir.filePath("fifo.wav");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QElapsedTimer clock;
    clock.start();
    const WavInfo pipe = ReadWavInfo(fifo);
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(pipe.error.contains("not a regular file")) << pipe.error.toStdString();
    EXPECT_TRUE(ReadWavInfo(dir.path()).error.contains("not a regular file"));
    EXPECT_TRUE(ReadWavInfo(dir.filePath("none.wav")).error.contains("does not exist"));
}

TEST(FfmpegOutput, DurationProgressAndProbeLines) {
    EXPECT_EQ(FfmpegDurationMs("  Duration: 00:01:07.04, start: 0.000000, bitrate: 1 kb/s"), 67040);
    EXPECT_EQ(FfmpegDurationMs("  Duration: N/A, start: 0.000000"), -1);
    EXPECT_EQ(FfmpegDurationCode("Input #0\n  Duration: 00:00:05.00, start"), "00:00:05.00");
    // Only a line that begins with it: a name or a tag may hold the word.
    EXPECT_EQ(FfmpegDurationCode("from 'Duration: 01:00:00.00, x':\n"
                                 "    title : Duration: 02:00:00.00, y\n"
                                 "  Duration: 00:00:07.50, start: 0.0"),
              "00:00:07.50");
    EXPECT_EQ(FfmpegProgressMs("frame=   50 fps=0.0 q=-0.0 size=256kB time=01:00:01.23 bitrate=1"),
              3601230);
    EXPECT_EQ(FfmpegProgressMs("size=N/A time=N/A bitrate=N/A"), -1);
    EXPECT_EQ(FfmpegProgressMs("out_time_us=62500000"), 62500);
    EXPECT_EQ(FfmpegProgressMs("out_time_us=N/A"), -1);

    EXPECT_EQ(FfmpegStreamFields("h264 (High), yuv420p(tv, bt709), 1280x720 [SAR 1:1], 25 fps"),
              QStringList({"h264 (High)", "yuv420p(tv, bt709)", "1280x720 [SAR 1:1]", "25 fps"}));
    EXPECT_EQ(FfmpegLabelLine("a\n  Stream #0:1: Audio: mp2, 44100 Hz\r\nb", u"audio: "),
              "mp2, 44100 Hz");
    EXPECT_TRUE(FfmpegLabelLine("nothing", u"Video: ").isNull());

    const QList<FfmpegStream> streams =
        FfmpegInputStreams("Input #0, avi, from 'Stream #0:5: Audio: x.avi':\n"
                           "    title           : Stream #0:6: Audio: y\r\n"
                           "  Stream #0:0: Video: mpeg4 (Simple Profile), yuv420p, 320x180\r\n"
                           "  Stream #0:1[0x2](eng): Audio: aac (LC), 44100 Hz, stereo\n"
                           "  Stream #0:2(und)[0x3]: Subtitle: mov_text\n"
                           "  Stream #1.0: Audio: mp2");
    ASSERT_EQ(streams.size(), 4);
    EXPECT_EQ(streams[0].kind, "Video");
    EXPECT_EQ(streams[1].kind, "Audio");
    EXPECT_EQ(streams[1].description, "aac (LC), 44100 Hz, stereo");
    EXPECT_EQ(streams[2].kind, "Subtitle");
    EXPECT_EQ(streams[3].description, "mp2");

    const ProbedLengths l = FfprobeLengths("codec_type=video\nduration=10.010000\n"
                                           "codec_type=audio\nduration=9.998000\n"
                                           "duration=10.020000\n");
    EXPECT_EQ(l.videoMs, 10010);
    EXPECT_EQ(l.audioMs, 9998);
    EXPECT_EQ(l.formatMs, 10020);
    const ProbedLengths none = FfprobeLengths("codec_type=audio\nduration=N/A\nduration=N/A\n");
    EXPECT_EQ(none.audioMs, -1);
    EXPECT_EQ(none.formatMs, -1);
}

// The summaries as this ffmpeg prints them: a tone, digital silence, and a run that printed none.
TEST(FfmpegOutput, LoudnessAndNoiseFloorSummaries) {
    auto stderrOf = [](const QString& source, const QString& filter) {
        ToolRunner runner;
        const RunResult r =
            runner.runProgram(LocateTool({}, "ffmpeg", "ffmpeg").path,
                              {"-nostdin", "-hide_banner", "-nostats", "-f", "lavfi", "-i", source,
                               "-af", filter, "-f", "null", "-"});
        EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
        return r.errorText;
    };
    const QString loudness = "ebur128=peak=true:framelog=verbose";
    const QString floor = "astats=measure_overall=Noise_floor:measure_perchannel=none";
    // The sine source's amplitude is 1/8: peaks at -18.1 dB, its power 3 dB under that.
    const LoudnessSummary tone = FfmpegLoudnessSummary(stderrOf("sine=f=1000:d=3", loudness));
    ASSERT_TRUE(tone.ok());
    EXPECT_NEAR(tone.integratedLufs, -21.1, 0.3);
    EXPECT_NEAR(tone.truePeakDb, -18.1, 0.3);

    const QString silence = "anullsrc=r=44100:cl=mono:d=2";
    const LoudnessSummary quiet = FfmpegLoudnessSummary(stderrOf(silence, loudness));
    EXPECT_EQ(quiet.integratedLufs, -70.0);
    EXPECT_TRUE(std::isinf(quiet.truePeakDb) && quiet.truePeakDb < 0);
    EXPECT_TRUE(std::isinf(FfmpegNoiseFloorDb(stderrOf(silence, floor))));

    const double hiss = FfmpegNoiseFloorDb(stderrOf("anoisesrc=amplitude=0.01:d=2", floor));
    EXPECT_LT(hiss, -30);
    EXPECT_GT(hiss, -60);

    EXPECT_FALSE(FfmpegLoudnessSummary("Input #0, wav\n  Duration: 00:00:01.00").ok());
    EXPECT_TRUE(std::isnan(FfmpegNoiseFloorDb("nothing measured")));
}
