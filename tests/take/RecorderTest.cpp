#include "take/Recorder.h"
#include "platform/WavFileWriter.h"
#include "platform/WavFormat.h"
#include "support/FileSizeLimit.h"
#include "support/TestAudio.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMediaDevices>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <iostream>

using namespace cq;

namespace {

struct WrittenWav {
    quint32 dataBytes = 0;
    QByteArray samples;
};

WrittenWav readWav(const QString& path) {
    QFile f(path);
    WrittenWav w;
    if (!f.open(QIODevice::ReadOnly))
        return w;
    const QByteArray all = f.readAll();
    if (all.size() < 44 || !all.startsWith("RIFF") || all.mid(8, 4) != "WAVE")
        return w;
    w.dataBytes = qFromLittleEndian<quint32>(all.constData() + 40);
    w.samples = all.mid(44);
    return w;
}

double rms(const QByteArray& samples) {
    const auto* s = reinterpret_cast<const qint16*>(samples.constData());
    const qsizetype n = samples.size() / 2;
    double sum = 0;
    for (qsizetype i = 0; i < n; ++i)
        sum += double(s[i]) * s[i];
    return n ? std::sqrt(sum / n) : 0;
}

} // namespace

TEST(WavFileWriter, HeaderKeepsUpWhileWritingAndTheFileEndsConsistent) {
    QTemporaryDir dir;
    const QString path = dir.filePath("v.wav");
    WavFileWriter w(44100, 1);
    w.setHeaderEveryBytes(1000);
    ASSERT_TRUE(w.open(path));
    ASSERT_TRUE(w.append(QByteArray(600, '\2')));
    EXPECT_EQ(readWav(path).dataBytes, 0u); // not yet: the header waits for 1000 bytes
    ASSERT_TRUE(w.append(QByteArray(601, '\2')));
    // On disk now, as a killed process would leave it; a torn sample is left out.
    WrittenWav mid = readWav(path);
    EXPECT_EQ(mid.dataBytes, 1200u);
    EXPECT_EQ(mid.samples.size(), 1201);
    ASSERT_TRUE(w.append(QByteArray(1, '\2')));
    ASSERT_TRUE(w.close());
    EXPECT_EQ(readWav(path).dataBytes, 1202u);
    EXPECT_EQ(WavDurationMs(path), 1202 * 1000 / 88200);
    EXPECT_EQ(WavDurationMs(dir.filePath("none.wav")), -1);
}

TEST(WavFileWriter, AFullDiskKeepsWhatWasWrittenAndSaysSo) {
    QTemporaryDir dir;
    // The file-size limit stands in for a disk that fills up mid-recording.
    test::FileSizeLimit limit(44 + 10000);
    ASSERT_TRUE(limit.isSet());
    const QString path = dir.filePath("v.wav");
    WavFileWriter w(44100, 1);
    ASSERT_TRUE(w.open(path));
    bool failed = false;
    for (int i = 0; i < 20 && !failed; ++i)
        failed = !w.append(QByteArray(882, '\3'));
    limit.lift();
    EXPECT_TRUE(failed);
    EXPECT_FALSE(w.errorString().isEmpty());
    w.close();
    const WrittenWav kept = readWav(path);
    EXPECT_EQ(kept.dataBytes, 10000u);
    EXPECT_EQ(kept.samples.size(), 10000);

    WavFileWriter blocked(44100, 1);
    EXPECT_FALSE(blocked.open(dir.filePath("no such folder/v.wav")));
    EXPECT_FALSE(blocked.errorString().isEmpty());
    WavFileWriter full(44100, 1);
    EXPECT_FALSE(full.open("/dev/full"));
}

TEST(Recorder, TwoSecondsOfTheTestMicrophone) {
    REQUIRE_AUDIO();
    QTemporaryDir dir;
    const QString path = dir.filePath("RecordedAudio.wav");
    Recorder rec;
    // A sound server that has just started takes its time with the first stream; that is
    // the test rig, not the program, so a short recording comes first.
    ASSERT_EQ(rec.start(path), Recorder::StartResult::Started) << rec.errorString().toStdString();
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() > 0; }, 4000));
    rec.stop();
    QElapsedTimer sinceStart;
    sinceStart.start();
    ASSERT_EQ(rec.start(path), Recorder::StartResult::Started) << rec.errorString().toStdString();
    // Pressing record again changes nothing.
    EXPECT_EQ(rec.start(dir.filePath("other.wav")), Recorder::StartResult::AlreadyRecording);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() > 0; }, 3000));
    const qint64 latencyMs = sinceStart.elapsed() - rec.elapsedMs();
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    const qint64 atFirst = rec.elapsedMs();
    ASSERT_TRUE(QTest::qWaitFor([&] { return sinceFirst.elapsed() >= 2000; }, 5000));
    const qint64 wallMs = sinceFirst.elapsed();
    const qint64 bytes = rec.stop();
    const double capturedMs = (bytes * 1000.0 / 88200.0) - atFirst;
    std::cout << "capture start latency " << rec.startLatencyMs() << " ms (" << latencyMs
              << " ms from the record click, sound system set-up included); " << capturedMs
              << " ms captured in " << wallMs << " ms\n";
    EXPECT_NEAR(capturedMs, double(wallMs), wallMs * 0.05);
    EXPECT_GE(rec.startLatencyMs(), 0);
    EXPECT_LT(rec.startLatencyMs(), 1500);

    const WrittenWav w = readWav(path);
    EXPECT_EQ(qint64(w.dataBytes), bytes);
    EXPECT_EQ(w.samples.size(), bytes);
    EXPECT_FALSE(QFile::exists(dir.filePath("other.wav")));
    // The test microphone hears a steady 440 Hz tone.
    const QByteArray lastSecond = w.samples.right(88200);
    EXPECT_GT(rms(lastSecond), 500.0);
    const auto* s = reinterpret_cast<const qint16*>(lastSecond.constData());
    int crossings = 0;
    for (int i = 1; i < lastSecond.size() / 2; ++i)
        crossings += (s[i - 1] < 0) != (s[i] < 0);
    EXPECT_NEAR(crossings, 880, 40);

    // A second recording replaces the first.
    ASSERT_EQ(rec.start(path), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() > 300; }, 3000));
    std::cout << "second recording: start latency " << rec.startLatencyMs() << " ms\n";
    const qint64 second = rec.stop();
    EXPECT_EQ(readWav(path).samples.size(), second);
    EXPECT_LT(second, bytes);
}

TEST(Recorder, AVoiceTheDiskCannotSyncEndsCaptureOrIsToldAfterStop) {
    REQUIRE_AUDIO();
    QTemporaryDir dir;
    Recorder rec;
    rec.setHeaderEveryBytes(88200 / 20);
    const auto failing = [](int) {
        errno = EIO;
        return -1;
    };
    QString detail;
    int ended = 0;
    QObject::connect(&rec, &Recorder::captureEnded,
                     [&](Recorder::EndReason reason, const QString& why) {
                         EXPECT_EQ(reason, Recorder::EndReason::WriteFailed);
                         detail = why;
                         ++ended;
                     });
    int afterStop = 0;
    QObject::connect(&rec, &Recorder::lastSyncFailed, [&] { ++afterStop; });
    const auto settled = [&] {
        return QTest::qWaitFor([&] { return !rec.voiceSyncer().isBusy(); }, 10000);
    };

    rec.voiceSyncer().setSyncFunction(failing);
    ASSERT_EQ(rec.start(dir.filePath("v.wav")), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended > 0; }, 10000));
    EXPECT_TRUE(detail.contains(QString::fromLocal8Bit(strerror(EIO)))) << detail.toStdString();
    EXPECT_FALSE(rec.isCapturing());
    EXPECT_TRUE(rec.isRecording());
    EXPECT_GT(rec.stop(), 0);
    ASSERT_TRUE(settled());
    QCoreApplication::processEvents();
    EXPECT_EQ(ended, 1) << "one report for the take";
    EXPECT_EQ(afterStop, 0);

    // A take whose last sync fails, at the stop, is told so.
    rec.voiceSyncer().setSyncFunction(::fdatasync);
    ASSERT_EQ(rec.start(dir.filePath("w.wav")), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.capturedMs() > 200; }, 10000));
    rec.voiceSyncer().setSyncFunction(failing);
    EXPECT_GT(rec.stop(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return afterStop > 0; }, 10000));
    ASSERT_TRUE(settled());
    QCoreApplication::processEvents();
    EXPECT_EQ(afterStop, 1);
    EXPECT_EQ(ended, 1);
}

TEST(Recorder, TheLimitEndsCaptureButNotTheTimeline) {
    REQUIRE_AUDIO();
    QTemporaryDir dir;
    Recorder rec;
    rec.setLimitBytes(88200 / 2); // half a second stands in for 1000
    int ended = 0;
    QObject::connect(&rec, &Recorder::captureEnded, [&](Recorder::EndReason reason) {
        EXPECT_EQ(reason, Recorder::EndReason::LimitReached);
        ++ended;
    });
    ASSERT_EQ(rec.start(dir.filePath("v.wav")), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended > 0; }, 4000));
    EXPECT_FALSE(rec.isCapturing());
    EXPECT_TRUE(rec.isRecording());
    const qint64 t1 = rec.elapsedMs();
    // The clock goes on past the captured voice.
    EXPECT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() - t1 >= 250; }, 5000));
    EXPECT_EQ(rec.stop(), 88200 / 2);
    EXPECT_EQ(readWav(dir.filePath("v.wav")).dataBytes, 88200u / 2);
}

namespace {
// Runs a program to its end; its standard output.
QString run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    p.waitForFinished(10000);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}
} // namespace

TEST(Recorder, EventTimesLineUpWithTheVoice) {
    REQUIRE_AUDIO();
    const QString paplay = QStandardPaths::findExecutable("paplay");
    if (paplay.isEmpty())
        GTEST_SKIP() << "paplay is not installed";
    QTemporaryDir dir;
    // A loud 1 kHz burst, far above the test microphone's tone.
    QByteArray burst;
    for (int i = 0; i < 44100 * 3 / 10; ++i) {
        const qint16 v = (i / 22) % 2 ? 30000 : -30000;
        burst.append(reinterpret_cast<const char*>(&v), 2);
    }
    const QString burstFile = dir.filePath("burst.wav");
    {
        QFile f(burstFile);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(WavHeader(44100, 1, 16, burst.size()) + burst);
    }
    Recorder rec;
    const QString path = dir.filePath("v.wav");
    ASSERT_EQ(rec.start(path), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() >= 1000; }, 5000));
    // The click: its time is logged as the sound is made.
    QProcess player;
    const qint64 eventMs = rec.elapsedMs();
    player.start(paplay, {"--latency-msec=20", "-d", "micfeed", burstFile});
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() >= eventMs + 1500; }, 6000));
    player.waitForFinished(3000);
    rec.stop();
    const WrittenWav w = readWav(path);
    const auto* s = reinterpret_cast<const qint16*>(w.samples.constData());
    qint64 onset = -1;
    for (qsizetype i = 0; i < w.samples.size() / 2; ++i)
        if (std::abs(int(s[i])) > 20000) {
            onset = i * 1000 / 44100;
            break;
        }
    ASSERT_GE(onset, 0) << "the burst never reached the microphone";
    std::cout << "event logged at " << eventMs << " ms, its sound is in the voice at " << onset
              << " ms: " << onset - eventMs << " ms later (player start-up included)\n";
    EXPECT_GE(onset - eventMs, -50);
    EXPECT_LE(onset - eventMs, 400);
}

TEST(Recorder, ADeviceThatVanishesEndsCaptureAndKeepsTheVoice) {
    REQUIRE_AUDIO();
    const QString pactl = QStandardPaths::findExecutable("pactl");
    if (pactl.isEmpty())
        GTEST_SKIP() << "pactl is not installed";
    const QString module = run(pactl, {"load-module", "module-remap-source",
                                       "source_name=vanishmic", "master=micfeed.monitor"});
    ASSERT_FALSE(module.isEmpty());
    QAudioDevice device;
    QTest::qWaitFor(
        [&] {
            for (const QAudioDevice& d : QMediaDevices::audioInputs())
                if (d.id() == "vanishmic")
                    device = d;
            return !device.isNull();
        },
        3000);
    if (device.isNull()) {
        run(pactl, {"unload-module", module});
        GTEST_SKIP() << "the new source did not show up as an input";
    }
    QTemporaryDir dir;
    Recorder rec;
    QList<Recorder::EndReason> reasons;
    QObject::connect(&rec, &Recorder::captureEnded,
                     [&](Recorder::EndReason reason) { reasons << reason; });
    ASSERT_EQ(rec.start(dir.filePath("v.wav"), device), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() >= 800; }, 5000));
    run(pactl, {"unload-module", module});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !reasons.isEmpty(); }, 4000));
    EXPECT_EQ(reasons, QList<Recorder::EndReason>({Recorder::EndReason::DeviceLost}));
    EXPECT_TRUE(rec.isRecording());
    const qint64 bytes = rec.stop();
    EXPECT_GE(bytes, 88200 * 8 / 10);
    const WrittenWav w = readWav(dir.filePath("v.wav"));
    EXPECT_EQ(qint64(w.dataBytes), bytes);
    EXPECT_EQ(w.samples.size(), bytes);
}

// Destroying the sound system's stream runs the event loop. A recorder stopped or torn down in
// any state leaves that to the main loop: run inside a destructor, the loop hands events to
// objects half torn down (a window being closed, the stream itself).
TEST(Recorder, StoppingOrTearingDownRunsNoEventLoop) {
    REQUIRE_AUDIO();
    enum Step { Listening, Recording, StoppedAtOnce, StoppedWithVoice, Steps };
    QTemporaryDir dir;
    for (int round = 0; round < 5 * Steps; ++round) {
        const int step = round % Steps;
        SCOPED_TRACE(round);
        QObject context;
        bool loopRan = false;
        {
            Recorder rec;
            if (step == Listening) {
                ASSERT_TRUE(rec.listen());
            } else {
                ASSERT_EQ(rec.start(dir.filePath("v.wav")), Recorder::StartResult::Started);
            }
            if (step == StoppedWithVoice) {
                ASSERT_TRUE(QTest::qWaitFor([&] { return rec.elapsedMs() >= 200; }, 5000));
            }
            QTimer::singleShot(0, &context, [&] { loopRan = true; });
            if (step >= StoppedAtOnce)
                rec.stop();
            EXPECT_FALSE(loopRan) << "stopping ran the event loop";
        }
        EXPECT_FALSE(loopRan) << "the teardown ran the event loop";
        // The stream goes with the next turn of the loop.
        ASSERT_TRUE(QTest::qWaitFor([&] { return loopRan; }, 5000));
    }
}
