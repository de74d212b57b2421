#include "RenderFixture.h"

#include "library/MediaTyping.h"

#include <gtest/gtest.h>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {

// An item as a click in the browser logs it: typed by its file's name.
TimelineEvent Clicked(qint64 atMs, const QString& file) {
    return Event(GetMediaTypeFromFileSpec(file), atMs, file);
}

} // namespace

// A screenshot, a picture saved from the web and a video from a phone or a download: each is on
// screen from its time, the video with its own frames.
TEST_F(RenderEndToEnd, PngWebpAndMkvItemsAreShownFromTheirTimes) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QString png = mediaFile("Screenshot.PNG");
    const QString webp = mediaFile("saved from the web.webp");
    const QString mkv = mediaFile("clip.mkv");
    ASSERT_TRUE(media.voice(voice, 3.5));
    ASSERT_TRUE(media.solidPicture(png, "red", 640, 400));
    ASSERT_TRUE(media.solidPicture(webp, "yellow", 320, 240));
    ASSERT_TRUE(media.toneVideo(mkv, "green", 2.0, 1000));

    const RenderInputs in =
        inputsFor({Clicked(500, png), Clicked(1200, webp), Clicked(2000, mkv)}, voice);
    const RenderReport report = render(in);
    ASSERT_EQ(report.outcome, RenderReport::Outcome::Done) << report.message.toStdString();
    EXPECT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_TRUE(report.failedItems.isEmpty()) << report.failedItems.join(u'|').toStdString();

    const QString out = report.output;
    expectSequence(out, {{0.5, "red"}, {1.2, "yellow"}, {2.0, "green"}});
    EXPECT_EQ(ColourName(media.colourAt(out, 3.3)), "green");
    // The voice goes on under the video.
    EXPECT_GT(media.bandLevel(out, 2.2, 0.6, 440), -35);
}
