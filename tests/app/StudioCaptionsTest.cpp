#include "app/StudioCaptions.h"
#include "app/CommandLineRender.h"
#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "support/CuePrinting.h"
#include "support/TestRows.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

RenderInputs withATextRow() {
    RenderInputs in;
    in.rows = {test::Row(1, "Pictures", "0.000", "/p/a.jpg"),
               test::Row(2, "Text", "1.000", "/w/Hi.jpg")};
    in.rows[1].text = QStringLiteral("Hi");
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
