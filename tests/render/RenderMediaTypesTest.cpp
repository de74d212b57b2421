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

// A screenshot, a picture saved from the web, a video from a download and one from a screen
// recorder (a WebM written as a stream, which tells no duration): each is on screen from its time.
TEST_F(RenderEndToEnd, PngWebpMkvAndWebmItemsAreShownFromTheirTimes) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QString png = mediaFile("Screenshot.PNG");
    const QString webp = mediaFile("saved from the web.webp");
    const QString mkv = mediaFile("clip.mkv");
    ASSERT_TRUE(media.voice(voice, 3.5));
    ASSERT_TRUE(media.solidPicture(png, "red", 640, 400));
    ASSERT_TRUE(media.solidPicture(webp, "yellow", 320, 240));
    ASSERT_TRUE(media.toneVideo(mkv, "green", 2.0, 1000));
    const QString webm = mediaFile("screen recording.webm");
    ASSERT_TRUE(media.run(
        {"-f", "lavfi", "-i", "color=blue:s=320x240:r=25:d=1", "-live", "1", "-y", webm}));

    const RenderInputs in = inputsFor(
        {Clicked(500, png), Clicked(1200, webp), Clicked(2000, mkv), Clicked(2800, webm)}, voice);
    const RenderReport report = render(in);
    ASSERT_EQ(report.outcome, RenderReport::Outcome::Done) << report.message.toStdString();
    EXPECT_TRUE(report.ok()) << report.message.toStdString();
    EXPECT_TRUE(report.failedItems.isEmpty()) << report.failedItems.join(u'|').toStdString();

    const QString out = report.output;
    expectSequence(out, {{0.5, "red"}, {1.2, "yellow"}, {2.0, "green"}, {2.8, "blue"}});
    EXPECT_EQ(ColourName(media.colourAt(out, 3.4)), "blue");
    // The voice goes on under the video.
    EXPECT_GT(media.bandLevel(out, 2.2, 0.6, 440), -35);
}
