#include "RenderFixture.h"

#include "app/StudioCaptions.h"
#include "captions/CueSplitting.h"
#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"
#include "platform/ToolRunner.h"
#include "render/AviContents.h"
#include "studio/FinalMix.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <gtest/gtest.h>

using namespace cq;
using test::Event;
using test::RenderEndToEnd;

namespace {

// Pixels of two frames that differ clearly (more than compression noise), above and below a row.
struct Difference {
    int above = 0;
    int below = 0;
};

class CaptionsRender : public RenderEndToEnd {
protected:
    // The whole frame shown at a time.
    QImage frameAt(const QString& file, double seconds) const {
        ToolRunner runner;
        const RunResult r = runner.runProgram(
            paths.gstrFFMPEGFileSpec,
            {"-nostdin", "-v", "error", "-ss", QString::number(seconds, 'f', 3), "-i", file,
             "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"});
        const QByteArray px = runner.standardOutput();
        if (!r.ok() || px.size() != kWidth * kHeight * 3)
            return {};
        return QImage(reinterpret_cast<const uchar*>(px.constData()), kWidth, kHeight, kWidth * 3,
                      QImage::Format_RGB888)
            .copy();
    }

    Difference differenceAt(const QString& a, const QString& b, double seconds) const {
        const QImage x = frameAt(a, seconds);
        const QImage y = frameAt(b, seconds);
        EXPECT_FALSE(x.isNull() || y.isNull()) << seconds;
        Difference d;
        for (int row = 0; !x.isNull() && !y.isNull() && row < kHeight; ++row)
            for (int col = 0; col < kWidth; ++col) {
                const QColor p = x.pixelColor(col, row);
                const QColor q = y.pixelColor(col, row);
                if (std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) +
                        std::abs(p.blue() - q.blue()) >
                    90)
                    ++(row < kCaptionTop ? d.above : d.below);
            }
        return d;
    }

    // The fixture's take at a size where captions are large enough to count.
    RenderInputs message() {
        studio.gstrVideoRes = QStringLiteral("320X240");
        return threeItemTake();
    }

    static constexpr int kWidth = 320;
    static constexpr int kHeight = 240;
    // Captions stay in the lowest third of the frame.
    static constexpr int kCaptionTop = kHeight * 2 / 3;
};

} // namespace

TEST_F(CaptionsRender, SubtitleFilesStandBesideTheResultAndOnlyWhileItHasCaptions) {
    RenderInputs in = message();
    QDir().mkpath(app.file("out"));
    in.output = app.file("out/b.avi");
    in.writeCaptions = true;
    in.captions = {{500, 1400, "Hello"}, {2000, 2600, "x --> y\n\nsecond line"}};
    const RenderReport with = render(in);
    ASSERT_TRUE(with.ok()) << with.message.toStdString();
    EXPECT_EQ(ReadFileToBytes(app.file("out/b.srt")), WriteSrt(in.captions));
    EXPECT_EQ(ReadFileToBytes(app.file("out/b.vtt")), WriteVtt(in.captions));
    // Nothing but the result and its pair is left beside it.
    EXPECT_EQ(QDir(app.file("out")).entryList(QDir::Files),
              (QStringList{"b.avi", "b.srt", "b.vtt"}));

    // A render without captions takes the pair of the older one away.
    in.writeCaptions = false;
    const RenderReport without = render(in);
    ASSERT_TRUE(without.ok()) << without.message.toStdString();
    EXPECT_EQ(without.reusedPieces, 4); // captions beside the result change no piece
    EXPECT_EQ(QDir(app.file("out")).entryList(QDir::Files), QStringList{"b.avi"});

    // A sound-only result gets its pair too.
    RenderInputs voiceOnly = inputsFor({}, in.voiceFile);
    voiceOnly.writeCaptions = true;
    voiceOnly.captions = in.captions;
    ASSERT_TRUE(render(voiceOnly).ok());
    EXPECT_EQ(ReadFileToBytes(paths.gstrTempFilesDirectory + "/FinalMix.srt"),
              WriteSrt(in.captions));
    EXPECT_TRUE(QFileInfo::exists(paths.gstrTempFilesDirectory + "/FinalMix.vtt"));
}

TEST_F(CaptionsRender, BurnedCuesChangeOnlyTheLowerPartAndOnlyTheirPieces) {
    // A work folder whose name would break an unescaped filter graph.
    RenderInputs in = message();
    in.workFolder = app.file("work 'it's' [a]: b, c; d\\e\nf");
    ASSERT_TRUE(render(in).ok());
    const QString plain = app.file("plain.avi");
    ASSERT_TRUE(QFile::rename(paths.gstrFinalMixAVIFileSpec, plain));

    // Hostile texts: override tags, line break codes, the graph's own punctuation.
    in.burnCaptions = true;
    in.captions = {{800, 1300, "{\\an8}Top? \\N 'quoted': [x], y; z\n\u00e4 second line"},
                   {1800, 2300, "Under the video"}};
    const RenderReport burned = render(in);
    ASSERT_TRUE(burned.ok()) << burned.message.toStdString();
    const QString out = paths.gstrFinalMixAVIFileSpec;
    EXPECT_EQ(ReadAviContents(out).videoFrames, ReadAviContents(plain).videoFrames);
    // Only the red picture's stretch under its cue (15 frames) is made of real frames; the rest
    // of it is still one frame held.
    EXPECT_LE(media.frameTimes(out).size(), media.frameTimes(plain).size() + 15 + 6);

    for (double at : {1.0, 2.1}) {
        const Difference d = differenceAt(plain, out, at);
        EXPECT_GT(d.below, 40) << at;
        EXPECT_EQ(d.above, 0) << at;
    }
    for (double at : {0.3, 0.6, 1.4, 1.7, 2.4, 3.5}) {
        const Difference d = differenceAt(plain, out, at);
        EXPECT_EQ(d.above + d.below, 0) << at;
    }

    // The red picture is cut around its cue; black and blue are the plain render's own pieces.
    EXPECT_EQ(burned.reusedPieces, 2);
    // A new text for one cue makes only the piece under it again.
    in.captions[1].text = "Changed under the video";
    const RenderReport again = render(in);
    ASSERT_TRUE(again.ok()) << again.message.toStdString();
    EXPECT_EQ(again.reusedPieces, 5);
    EXPECT_GT(differenceAt(burned.output, plain, 2.1).below, 40);
}

TEST_F(CaptionsRender, AnUnreadablePictureCutByACueShowsBlackAndIsNamedOnce) {
    const QString voice = makeVoice(2.0);
    const QString broken = mediaFile("broken.jpg");
    test::WriteFile(broken, QByteArray("this is no picture"));
    RenderInputs in = inputsFor({Event(MediaKind::Pictures, 0, broken)}, voice);
    in.burnCaptions = true;
    in.captions = {{500, 1000, "Over black"}};
    const RenderReport report = render(in);
    ASSERT_EQ(report.outcome, RenderReport::Outcome::Done) << report.message.toStdString();
    EXPECT_EQ(report.failedItems, QStringList{broken});
    EXPECT_EQ(report.message.count(broken), 1) << report.message.toStdString();
    EXPECT_EQ(test::ColourName(media.colourAt(paths.gstrFinalMixAVIFileSpec, 0.7)), "black");
}

TEST_F(CaptionsRender, AnMp4CarriesTheCuesAsAnEnglishTrackAndBurnedIn) {
    studio.renderFormat = RenderFormat::Mp4;
    studio.keepVideoSound = true; // its sound is an input after the cue track's
    RenderInputs in = message();
    in.writeCaptions = true;
    in.burnCaptions = true;
    in.captions = {{500, 1200, "First, with: 'quotes'"},
                   {2000, 2700, "Second"},
                   {3800, 9000, "Past the voice's end"}};
    const RenderReport report = render(in);
    ASSERT_TRUE(report.ok()) << report.message.toStdString();
    const QString out = paths.gstrFinalMixMP4FileSpec;
    ASSERT_EQ(report.output, out);
    ToolRunner probe;
    probe.runProgram(LocateFfprobe(paths),
                     {"-v", "error", "-show_entries",
                      "stream=codec_type,codec_name:stream_tags=language", "-of", "csv=p=0", out});
    EXPECT_EQ(QString::fromUtf8(probe.standardOutput()).simplified().toStdString(),
              "h264,video,und aac,audio,und mov_text,subtitle,eng");
    // The track's cues read back as they were given, the last cut to the voice.
    ToolRunner track;
    track.runProgram(paths.gstrFFMPEGFileSpec,
                     {"-nostdin", "-v", "error", "-i", out, "-map", "0:s", "-f", "srt", "-"});
    const ReadCues read = ReadSubtitles(track.standardOutput());
    ASSERT_EQ(read.cues.size(), 3) << track.standardOutput().toStdString();
    EXPECT_EQ(read.cues[0], in.captions[0]);
    EXPECT_EQ(read.cues[2].endMs, 4000);
    // The index still comes before the media, and the voice sets the length.
    const QByteArray bytes = ReadFileToBytes(out);
    EXPECT_LT(bytes.indexOf("moov"), bytes.indexOf("mdat"));
    EXPECT_NEAR(media.duration(out, "format"), 4.0, 0.2);
    EXPECT_GT(media.bandLevel(out, 1.7, 0.6, 1000), -35);
    // Burned in as well: the frame under the first cue shows it at the bottom.
    const QImage frame = frameAt(out, 0.8);
    ASSERT_FALSE(frame.isNull());
    int white = 0;
    for (int row = kCaptionTop; row < kHeight; ++row)
        for (int col = 0; col < kWidth; ++col)
            white += frame.pixelColor(col, row).lightness() > 200;
    EXPECT_GT(white, 40);
    EXPECT_TRUE(QFileInfo::exists(paths.gstrTempFilesDirectory + "/FinalMix.srt"));
}

// A subtitle track's encoder refuses a cue of many kilobytes: such a cue is shortened before the
// render, in the track, the burned-in picture and the files beside alike, and the user told.
TEST_F(CaptionsRender, AHugeCueIsShortenedNamedAndRendered) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 3.0, 500);
    const QString words = QStringLiteral("word ").repeated(20000);
    studio.renderFormat = RenderFormat::Mp4;
    studio.captions = true;
    studio.burnCaptions = true;
    RenderInputs in = inputsFor(rows, voice);
    AddCaptions(in, studio, {{500, 1500, "Hello"}, {1500, 2500, words}});
    const RenderReport report = render(in);
    ASSERT_TRUE(report.ok()) << report.message.left(400).toStdString();
    EXPECT_TRUE(report.message.startsWith("Caption 2 (at 00:00:01,500) had 100000 characters"))
        << report.message.left(400).toStdString();
    const ReadCues beside = ReadSubtitles(ReadFileToBytes(SubtitleFilesBeside(report.output)[0]));
    ASSERT_EQ(beside.cues.size(), 2);
    EXPECT_LE(beside.cues[1].text.size(), kMaxCueCharacters + 1); // and the line break
}
