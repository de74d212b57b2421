#include "platform/WavFormat.h"
#include "support/TestAudio.h"
#include "take/Microphone.h"
#include "take/Recorder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>

using namespace cq;

namespace {

bool pactl(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral("pactl"), args);
    return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// Mutes the test microphone for as long as it lives, so a failed check leaves it heard again.
struct MutedMicrophone {
    MutedMicrophone() { ok = pactl({"set-source-mute", "testmic", "1"}); }
    ~MutedMicrophone() { pactl({"set-source-mute", "testmic", "0"}); }
    bool ok = false;
};

// A studio's recorder: the microphone open and sound arriving.
bool listening(Recorder& recorder) {
    return recorder.listen() &&
           QTest::qWaitFor([&] { return recorder.meter().windowsMeasured() >= 4; }, 10000);
}

struct WavOnDisk {
    qint64 fileBytes = 0;
    qint64 riffBytes = 0;
    qint64 headerDataBytes = 0;
};

WavOnDisk readHeader(const QString& path) {
    QFile f(path);
    WavOnDisk w;
    if (!f.open(QIODevice::ReadOnly))
        return w;
    const QByteArray header = f.read(44);
    w.fileBytes = f.size();
    if (header.size() == 44 && header.startsWith("RIFF") && header.mid(36, 4) == "data") {
        w.riffBytes = qFromLittleEndian<quint32>(header.constData() + 4);
        w.headerDataBytes = qFromLittleEndian<quint32>(header.constData() + 40);
    }
    return w;
}

} // namespace

TEST(Capture, TheMeterReadsTheTestToneAndWarnsWhenTheMicrophoneIsMuted) {
    REQUIRE_AUDIO();
    Recorder recorder;
    ASSERT_TRUE(listening(recorder)) << recorder.microphone().errorString().toStdString();
    // The test microphone hears a sine at an eighth of full scale: -18 dBFS.
    ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.meter().windowsMeasured() >= 20; }, 10000));
    const SoundLevel tone = recorder.meter().level();
    std::cout << "test tone: RMS " << tone.rmsDb << " dBFS, peak " << tone.peakDb << " dBFS\n";
    EXPECT_NEAR(tone.rmsDb, -21.0, 1.0);
    EXPECT_NEAR(tone.peakDb, -18.0, 1.0);
    EXPECT_EQ(recorder.meter().warning(), LevelWarning::None);

    QTemporaryDir dir;
    MutedMicrophone muted;
    ASSERT_TRUE(muted.ok);
    ASSERT_EQ(recorder.start(dir.filePath("v.wav")), Recorder::StartResult::Started);
    QElapsedTimer sinceMute;
    sinceMute.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.meter().warning() == LevelWarning::NoSound; },
                                15000));
    std::cout << "no sound reported " << sinceMute.elapsed() << " ms after muting\n";
    EXPECT_GE(sinceMute.elapsed(), 1900);
    EXPECT_EQ(recorder.meter().level().rmsDb, kLevelFloorDb);
    pactl({"set-source-mute", "testmic", "0"});
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return recorder.meter().warning() == LevelWarning::None; }, 10000));
    EXPECT_TRUE(recorder.isCapturing()) << "silence is no reason to stop the take";
    recorder.stop();
}

TEST(Capture, EveryTakeLastsFromThePressToTheStop) {
    REQUIRE_AUDIO();
    QTemporaryDir dir;
    Recorder recorder;
    ASSERT_TRUE(listening(recorder));
    for (int take = 0; take < 3; ++take) {
        const QString path = dir.filePath(QStringLiteral("take%1.wav").arg(take));
        QElapsedTimer betweenPresses;
        betweenPresses.start();
        ASSERT_EQ(recorder.start(path), Recorder::StartResult::Started);
        const qint64 wantMs = 900 + 500 * take;
        ASSERT_TRUE(QTest::qWaitFor([&] { return betweenPresses.elapsed() >= wantMs; },
                                    int(wantMs) + 1000));
        const qint64 bytes = recorder.stop();
        const qint64 pressesMs = betweenPresses.elapsed();
        const qint64 wavMs = WavDurationMs(path);
        std::cout << "take " << take + 1 << ": " << pressesMs << " ms between the presses, "
                  << wavMs << " ms of voice, first sound " << recorder.startLatencyMs()
                  << " ms after the press\n";
        EXPECT_EQ(wavMs, bytes * 1000 / Recorder::kBytesPerSecond);
        EXPECT_NEAR(double(wavMs), double(pressesMs), 150.0) << "take " << take + 1;
        EXPECT_TRUE(recorder.microphone().isOpen()) << "the microphone stays open between takes";
    }
}

TEST(Capture, TheVoiceOnDiskIsAValidWavUpToTheLastSecondWhileRecording) {
    REQUIRE_AUDIO();
    QTemporaryDir dir;
    const QString path = dir.filePath("RecordedAudio.wav");
    Recorder recorder;
    ASSERT_TRUE(listening(recorder));
    ASSERT_EQ(recorder.start(path), Recorder::StartResult::Started);
    for (const qint64 atMs : {1300, 2600}) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.capturedMs() >= atMs; }, 10000));
        // Read as another process would see it after a kill at this moment.
        const WavOnDisk w = readHeader(path);
        const qint64 samplesOnDisk = w.fileBytes - 44;
        std::cout << "at " << atMs << " ms: header covers " << w.headerDataBytes << " of "
                  << samplesOnDisk << " bytes on disk\n";
        EXPECT_EQ(w.riffBytes, 36 + w.headerDataBytes);
        EXPECT_EQ(w.headerDataBytes % 2, 0);
        EXPECT_LE(w.headerDataBytes, samplesOnDisk);
        EXPECT_GE(w.headerDataBytes, samplesOnDisk - Recorder::kBytesPerSecond);
        EXPECT_GT(w.headerDataBytes, 0);
        const WavInfo info = ReadWavInfo(path);
        EXPECT_TRUE(info.ok()) << info.error.toStdString();
    }
    recorder.stop();
    EXPECT_EQ(readHeader(path).headerDataBytes, readHeader(path).fileBytes - 44);
}

namespace {
// Takes the test microphone away from the sound server; it comes back with the object at the
// latest, as the default input again.
struct UnpluggedMicrophone {
    UnpluggedMicrophone() {
        QProcess p;
        p.start(QStringLiteral("sh"),
                {"-c", "pactl list short modules | grep 'source_name=testmic' | cut -f1"});
        p.waitForFinished(10000);
        module = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
        ok = !module.isEmpty() && pactl({"unload-module", module});
    }
    ~UnpluggedMicrophone() { plugBackIn(); }
    bool plugBackIn() {
        if (!ok)
            return true;
        ok = false;
        return pactl({"load-module", "module-remap-source", "source_name=testmic",
                      "master=micfeed.monitor"}) &&
               pactl({"set-default-source", "testmic"});
    }
    QString module;
    bool ok = false;
};
} // namespace

TEST(Capture, AMicrophoneThatGoesAndComesBackIsHeardAgain) {
    REQUIRE_AUDIO();
    Recorder recorder;
    ASSERT_TRUE(listening(recorder));
    Microphone& mic = recorder.microphone();
    const auto heard = [&] {
        const qint64 windows = recorder.meter().windowsMeasured();
        return QTest::qWaitFor([&] { return recorder.meter().windowsMeasured() >= windows + 10; },
                               10000);
    };
    QTemporaryDir dir;
    ASSERT_EQ(recorder.start(dir.filePath("v.wav")), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.capturedMs() >= 500; }, 10000));
    QList<Recorder::EndReason> ended;
    QObject::connect(&recorder, &Recorder::captureEnded,
                     [&](Recorder::EndReason reason) { ended << reason; });
    UnpluggedMicrophone unplugged;
    ASSERT_TRUE(unplugged.ok);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }, 10000));
    EXPECT_EQ(ended, QList<Recorder::EndReason>({Recorder::EndReason::DeviceLost}));
    EXPECT_FALSE(mic.isOpen());
    EXPECT_EQ(recorder.meter().level().rmsDb, kLevelFloorDb);
    const qint64 kept = recorder.stop();
    EXPECT_GE(kept, Recorder::kBytesPerSecond / 2);

    ASSERT_TRUE(unplugged.plugBackIn());
    ASSERT_TRUE(QTest::qWaitFor([&] { return mic.isOpen(); }, 10000));
    EXPECT_TRUE(heard());
    // A source plugged back in may deliver silence for a moment before the tone reaches it.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return std::abs(recorder.meter().level().rmsDb - -21.0) <= 1.0; }, 10000))
        << recorder.meter().level().rmsDb;
    // And the next take starts at its press again.
    QElapsedTimer betweenPresses;
    betweenPresses.start();
    ASSERT_EQ(recorder.start(dir.filePath("w.wav")), Recorder::StartResult::Started);
    ASSERT_TRUE(QTest::qWaitFor([&] { return betweenPresses.elapsed() >= 1000; }, 3000));
    const qint64 bytes = recorder.stop();
    EXPECT_NEAR(double(bytes * 1000 / Recorder::kBytesPerSecond), double(betweenPresses.elapsed()),
                150.0);
}
