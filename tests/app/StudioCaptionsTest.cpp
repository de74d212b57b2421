#include "app/StudioCaptions.h"
#include "StudioProcess.h"
#include "app/CommandLineRender.h"
#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/CuePrinting.h"
#include "support/SpokenVoice.h"
#include "support/TestRows.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

using namespace cq;

namespace {

RenderInputs withATextRow() {
    RenderInputs in;
    in.rows = {test::Event(MediaKind::Pictures, 0, "/p/a.jpg"),
               test::Event(MediaKind::Text, 1000, "/w/Hi.jpg", std::nullopt, "Hi")};
    in.recordingMs = 3000;
    return in;
}

StudioSettings options(bool captions, bool burn) {
    StudioSettings studio;
    studio.captions = captions;
    studio.burnCaptions = burn;
    return studio;
}

} // namespace

TEST(StudioCaptions, TheMessagesOwnCuesOrElseItsTextsGoToARenderThatAsks) {
    const CaptionCues own{{200, 900, "Said"}};
    RenderInputs in = withATextRow();
    AddCaptions(in, options(false, false), own);
    EXPECT_FALSE(in.writeCaptions || in.burnCaptions);
    EXPECT_TRUE(in.captions.isEmpty());

    AddCaptions(in, options(true, false), own);
    EXPECT_TRUE(in.writeCaptions);
    EXPECT_FALSE(in.burnCaptions);
    EXPECT_EQ(in.captions, own);

    // Burning in needs the cues as much as writing them does.
    AddCaptions(in, options(false, true), {});
    EXPECT_FALSE(in.writeCaptions);
    EXPECT_TRUE(in.burnCaptions);
    EXPECT_EQ(in.captions, (CaptionCues{{1000, 3000, "Hi"}}));
}

TEST(StudioCaptions, TheCommandLineTakesTheProjectsCaptionsFileOrElseItsTexts) {
    QTemporaryDir project;
    const QString timeline = project.filePath("Timeline.txt");
    WriteWholeFile("1\tText\t0.500\t\tHi.jpg\tHi there\r\n", timeline);
    WriteWholeFile(WavHeader(8000, 1, 16, 32000) + QByteArray(32000, '\1'),
                   project.filePath("RecordedAudio.wav"));
    const AppPaths paths = AppPaths::forFolder(project.filePath("app"));
    const CommandLineRenderOptions render{timeline, {}, {}, {}};

    // The voice is heard first; it holds no words, so the text is the one caption.
    RenderRequest request = CommandLineRenderRequest(paths, options(true, true), render, stderr);
    ASSERT_TRUE(request.ok()) << request.problem.toStdString();
    EXPECT_EQ(request.inputs.captions, (CaptionCues{{500, 2000, "Hi there"}}));
    EXPECT_TRUE(request.inputs.writeCaptions && request.inputs.burnCaptions);

    WriteWholeFile(WriteSrt({{100, 1900, "Corrected"}}), project.filePath("Captions.srt"));
    request = CommandLineRenderRequest(paths, options(true, false), render, stderr);
    EXPECT_EQ(request.inputs.captions, (CaptionCues{{100, 1900, "Corrected"}}));
    request = CommandLineRenderRequest(paths, options(false, false), render, stderr);
    EXPECT_TRUE(request.inputs.captions.isEmpty());

    const CommandLineRenderOptions noVoice{timeline, project.filePath("none.wav"), {}, {}};
    EXPECT_FALSE(CommandLineRenderRequest(paths, options(true, false), noVoice, stderr).ok());
}

TEST(StudioCaptions, TheCommandLineCaptionsAProjectWithoutCaptionsFromItsVoiceAndTexts) {
    QTemporaryDir project;
    const QString voice = project.filePath("RecordedAudio.wav");
    ASSERT_TRUE(test::MakeSpokenVoice("Welcome to our new video about the summer garden.", voice));
    const QString timeline = project.filePath("Timeline.txt");
    WriteWholeFile("1\tText\t0.500\t\tHi.jpg\tOur garden\r\n", timeline);
    const AppPaths paths = AppPaths::forFolder(project.filePath("app"));
    const CommandLineRenderOptions render{timeline, {}, {}, {}};
    const CaptionCue text{500, WavDurationMs(voice), "Our garden"};
    std::unique_ptr<FILE, int (*)(FILE*)> err(std::tmpfile(), &std::fclose);
    ASSERT_TRUE(err);

    RenderRequest request =
        CommandLineRenderRequest(paths, options(true, false), render, err.get());
    ASSERT_TRUE(request.ok()) << request.problem.toStdString();
    const CaptionCues& cues = request.inputs.captions;
    ASSERT_GE(cues.size(), 2);
    EXPECT_EQ(cues.first(), text) << "the text, before the voice that starts a second in";

    // Without the recogniser's model the texts alone are captioned, and the reason is told.
    QTemporaryDir noModel;
    qputenv("CLIPQUILL_SPEECH_MODEL_DIR", QFile::encodeName(noModel.path()));
    request = CommandLineRenderRequest(paths, options(false, true), render, err.get());
    qunsetenv("CLIPQUILL_SPEECH_MODEL_DIR");
    ASSERT_TRUE(request.ok());
    EXPECT_EQ(request.inputs.captions, CaptionCues{text});
    std::rewind(err.get());
    QFile said;
    ASSERT_TRUE(said.open(err.get(), QIODevice::ReadOnly));
    EXPECT_TRUE(said.readAll().contains("the voice could not be recognised (The English speech "
                                        "model is not installed."));
}

TEST(StudioCaptions, TheCommandLinesCaptionsOfAVoiceAreWrittenBesideTheResult) {
    QTemporaryDir project;
    const QString picture = project.filePath("red.jpg");
    ASSERT_TRUE(test::MakeMedia(
        {"-f", "lavfi", "-i", "color=red:size=320x240", "-frames:v", "1", picture}));
    ASSERT_TRUE(test::MakeSpokenVoice("Welcome to our new video about the summer garden.",
                                      project.filePath("RecordedAudio.wav")));
    const QString timeline = project.filePath("Timeline.txt");
    WriteWholeFile(QStringLiteral("1\tPictures\t0.000\t\t%1\r\n").arg(picture).toUtf8(), timeline);
    const QString app = project.filePath("app");
    const test::StudioRun run = test::RunStudioProgram(
        {"--app-dir", app, "--render", timeline, "--size", "160X120", "--captions"}, {});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QString srt = QFileInfo(run.out.trimmed()).absoluteDir().filePath("FinalMix.srt");
    const ReadCues written = ReadSubtitles(ReadFileToBytes(srt));
    QString spoken;
    for (const CaptionCue& cue : written.cues)
        spoken += cue.text + u' ';
    EXPECT_GE(
        test::WordsHeard(spoken, {"welcome", "new", "video", "about", "summer", "garden"}).size(),
        2)
        << srt.toStdString() << ": " << spoken.toStdString();
}
