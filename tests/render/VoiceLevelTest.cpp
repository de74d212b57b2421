#include "RenderFixture.h"

#include "platform/FfmpegOutput.h"
#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"
#include "render/VoiceLevel.h"
#include "studio/TimelineFile.h"

#include <gtest/gtest.h>

using namespace cq;
using test::Event;
using test::RenderEndToEnd;

namespace {

const char kWords[] = "Hello there. This is a short spoken message about the quarterly numbers, "
                      "which look rather good this time around. Thank you for listening.";

class VoiceLevel : public RenderEndToEnd {
protected:
    // Speech made by ffmpeg, scaled: -14 dB gives about -35 LUFS, +9 dB a take that clips.
    // noise: white hiss of this amplitude under the words and for two seconds after them.
    bool speech(const QString& file, double gainDb, double noise = 0) const {
        const QString words = QStringLiteral("flite=text='%1'").arg(kWords);
        const QString level = QStringLiteral("aresample=44100,volume=%1dB").arg(gainDb);
        if (noise <= 0)
            return media.run({"-f", "lavfi", "-i", words, "-af", level, "-ac", "1", "-ar", "44100",
                              "-c:a", "pcm_s16le", "-y", file});
        return media.run(
            {"-f", "lavfi", "-i", words, "-f", "lavfi", "-i",
             QStringLiteral("anoisesrc=color=white:seed=7:amplitude=%1").arg(noise),
             "-filter_complex",
             QStringLiteral("[0:a]%1,apad=pad_dur=2[s];[s][1:a]amix=inputs=2:duration=first:"
                            "normalize=0")
                 .arg(level),
             "-ac", "1", "-ar", "44100", "-c:a", "pcm_s16le", "-y", file});
    }

    // Loudness and true peak of a file's sound, from the given second on, as ebur128 reads them.
    LoudnessSummary loudness(const QString& file, double from = 0) const {
        ToolRunner runner;
        const RunResult r = runner.runProgram(
            paths.gstrFFMPEGFileSpec,
            {"-nostdin", "-hide_banner", "-nostats", "-i", file, "-vn", "-af",
             QStringLiteral("atrim=start=%1,ebur128=peak=true:framelog=verbose").arg(from), "-f",
             "null", "-"});
        EXPECT_TRUE(r.ok()) << r.errorText.toStdString();
        return FfmpegLoudnessSummary(r.errorText);
    }

    // The voice as AVI under one picture, or alone as MP3.
    RenderReport renderAs(const QString& voice, bool video) {
        QList<TimelineEvent> rows;
        if (video) {
            const QString red = mediaFile("red.jpg");
            EXPECT_TRUE(media.solidPicture(red, "red", 320, 240));
            rows << Event(MediaKind::Pictures, 500, red);
        }
        const RenderReport report = render(inputsFor(rows, voice));
        EXPECT_TRUE(report.ok()) << report.message.toStdString();
        return report;
    }

    void expectEven(const QString& file, const char* what) const {
        const LoudnessSummary l = loudness(file);
        ASSERT_TRUE(l.ok()) << what;
        EXPECT_NEAR(l.integratedLufs, -16.0, 1.0) << what;
        EXPECT_LE(l.truePeakDb, -1.5) << what;
    }
};

} // namespace

TEST_F(VoiceLevel, QuietAndClippingTakesComeOutEvenInVideoAndSoundOnlyResults) {
    const QString voice = mediaFile("RecordedAudio.wav");
    for (const double gainDb : {-14.0, 9.0}) {
        ASSERT_TRUE(speech(voice, gainDb));
        const std::string take = gainDb < 0 ? "quiet take" : "loud take";
        const LoudnessSummary raw = loudness(voice);
        EXPECT_NEAR(raw.integratedLufs, gainDb < 0 ? -35 : -12.5, 1.5) << take;

        for (const RenderFormat format : {RenderFormat::Avi, RenderFormat::Mp4}) {
            studio.renderFormat = format;
            const bool mp4 = format == RenderFormat::Mp4;
            const QString result =
                mp4 ? paths.gstrFinalMixMP4FileSpec : paths.gstrFinalMixAVIFileSpec;
            ASSERT_EQ(renderAs(voice, true).output, result);
            expectEven(result, (take + (mp4 ? ", MP4" : ", AVI")).c_str());
        }
        ASSERT_EQ(renderAs(voice, false).output, paths.gstrFinalMixMP3FileSpec);
        expectEven(paths.gstrFinalMixMP3FileSpec, (take + ", MP3").c_str());
    }
}

// The results carry at most two channels: a 5.1 take is measured as it is encoded, mixed down,
// with noise reduction or without.
TEST_F(VoiceLevel, ASixChannelTakeComesOutEvenAsItIsEncoded) {
    const QString mono = mediaFile("mono.wav");
    const QString voice = mediaFile("RecordedAudio.wav");
    ASSERT_TRUE(speech(mono, -14.0));
    ASSERT_TRUE(media.run({"-i", mono, "-af", "pan=5.1|c0=c0|c1=c0|c2=c0|c3=0.1*c0|c4=c0|c5=c0",
                           "-c:a", "pcm_s16le", "-y", voice}));
    for (const bool reduceNoise : {false, true}) {
        studio.reduceNoise = reduceNoise;
        for (const RenderFormat format : {RenderFormat::Avi, RenderFormat::Mp4}) {
            studio.renderFormat = format;
            const bool mp4 = format == RenderFormat::Mp4;
            const RenderReport report = renderAs(voice, true);
            expectEven(report.output,
                       QStringLiteral("5.1 take, %1%2")
                           .arg(mp4 ? "MP4" : "AVI", reduceNoise ? ", noise reduced" : "")
                           .toStdString()
                           .c_str());
        }
    }
}

TEST_F(VoiceLevel, RawVoiceFromTheCommandLineKeepsTheTakesLevel) {
    const QString folder = redPictureProject(1.0, "1.000");
    ASSERT_TRUE(speech(folder + "/RecordedAudio.wav", -14.0)); // in place of the plain voice
    const QString output = app.file("Raw.avi");
    const RunResult r =
        runStudio({"--render", folder + "/Timeline.txt", "--raw-voice", "--output", output});
    ASSERT_EQ(r.exitCode, 0) << r.errorText.toStdString();
    EXPECT_NEAR(loudness(output).integratedLufs,
                loudness(folder + "/RecordedAudio.wav").integratedLufs, 0.5);
}

TEST_F(VoiceLevel, TheMeasurementIsKeptUntilTheTakeOrTheNoiseSettingChanges) {
    const QString voice = mediaFile("RecordedAudio.wav");
    ASSERT_TRUE(speech(voice, -14.0));
    auto measuringRuns = [](const RenderReport& report) {
        return ReadFileToString(report.logFile).count("measuring the voice: ");
    };
    const RenderReport first = renderAs(voice, true);
    EXPECT_FALSE(first.voiceLevelReused);
    EXPECT_GE(measuringRuns(first), 1);

    const RenderReport again = renderAs(voice, true);
    EXPECT_TRUE(again.voiceLevelReused);
    EXPECT_EQ(measuringRuns(again), 0);
    expectEven(paths.gstrFinalMixAVIFileSpec, "kept measurement");

    // A new take of the same length is measured anew, and its own level comes out right.
    ASSERT_TRUE(speech(voice, 6.0));
    const RenderReport newTake = renderAs(voice, true);
    EXPECT_FALSE(newTake.voiceLevelReused);
    EXPECT_GE(measuringRuns(newTake), 1);
    expectEven(paths.gstrFinalMixAVIFileSpec, "new take");

    studio.reduceNoise = true;
    EXPECT_FALSE(renderAs(voice, true).voiceLevelReused);
    EXPECT_TRUE(renderAs(voice, true).voiceLevelReused);
}

TEST_F(VoiceLevel, NoiseReductionTakesTheHissOutWhenChosen) {
    const QString voice = mediaFile("RecordedAudio.wav");
    ASSERT_TRUE(speech(voice, 0.0, 0.01));
    // The hiss alone after the words, against the loudness of the whole.
    const double tail = media.duration(voice, "audio") - 1.5;
    auto hissUnderVoice = [&] {
        const QString out = paths.gstrFinalMixMP3FileSpec;
        return loudness(out, tail).integratedLufs - loudness(out).integratedLufs;
    };
    renderAs(voice, false);
    const double kept = hissUnderVoice();
    studio.reduceNoise = true;
    renderAs(voice, false);
    expectEven(paths.gstrFinalMixMP3FileSpec, "with noise reduction");
    EXPECT_LT(hissUnderVoice(), kept - 6.0); // afftdn takes up to 12 dB

    // Without an even voice, noise reduction alone still applies.
    studio.evenVoice = false;
    renderAs(voice, false);
    EXPECT_LT(hissUnderVoice(), kept - 6.0);
}

// A take of silence or faint hum is no voice to raise by 30 dB; a kept outcome that does not
// read back whole is measured again rather than trusted.
TEST(VoiceTreatment, SilenceIsLeftAloneAndOnlyWholeKeptOutcomesCount) {
    const VoiceTreatment silent = WithGainForLoudness({}, {-70.0, -qInf()});
    EXPECT_EQ(silent.gainDb, 0.0);
    EXPECT_FALSE(silent.limit);
    EXPECT_TRUE(VoiceFilter({true, false}, silent).isEmpty());

    const VoiceTreatment quiet = WithGainForLoudness({}, {-35.0, -16.5});
    EXPECT_EQ(VoiceTreatment::fromText(quiet.text()), quiet);
    EXPECT_FALSE(VoiceTreatment::fromText(quiet.text().chopped(3)));
    EXPECT_FALSE(VoiceTreatment::fromText(QString()));
}
