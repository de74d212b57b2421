#include "LocalHttpServer.h"
#include "RenderFixture.h"

#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace cq;
using test::ColourName;
using test::Event;
using test::RenderEndToEnd;

namespace {

// Seeks the video to each time, draws the frame on a canvas and posts its middle pixel's colour;
// posts the player's error instead when it cannot play the file.
const char kPage[] = R"(<!doctype html>
<html><body>
<video id="v" muted playsinline preload="auto" src="/result.mp4"></video>
<canvas id="c" width="160" height="120"></canvas>
<script>
const times = [0.25, 1.0, 2.0, 3.0, 3.9];
const v = document.getElementById('v');
const c = document.getElementById('c').getContext('2d', {willReadFrequently: true});
function post(result) {
  fetch('/report', {method: 'POST', body: JSON.stringify(result)});
}
function seek(t) {
  return new Promise(done => { v.addEventListener('seeked', done, {once: true}); v.currentTime = t; });
}
v.addEventListener('error', () => post({error: v.error.code + ' ' + v.error.message}));
v.addEventListener('loadeddata', async () => {
  const frames = [];
  for (const t of times) {
    await seek(t);
    c.drawImage(v, 0, 0, 160, 120);
    const p = c.getImageData(80, 60, 1, 1).data;
    frames.push({t: t, r: p[0], g: p[1], b: p[2]});
  }
  post({duration: v.duration, width: v.videoWidth, frames: frames});
}, {once: true});
</script></body></html>
)";

// A virtual display of its own: Xvfb picks a free display number and writes it when it is ready.
class VirtualDisplay {
public:
    bool start() {
        QObject::connect(&m_runner, &ToolRunner::outputLine, [this](const QString& line) {
            if (m_display.isEmpty() && !line.trimmed().isEmpty())
                m_display = u':' + line.trimmed();
        });
        return m_runner.startProgram(
                   LocateTool({}, "Xvfb", "Xvfb").path,
                   {"-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp"}) &&
               QTest::qWaitFor([this] { return !m_display.isEmpty() || !m_runner.isRunning(); },
                               30000) &&
               !m_display.isEmpty();
    }
    QString display() const { return m_display; }

private:
    ToolRunner m_runner; // its process group ends with it
    QString m_display;
};

// Whether any process still runs with the text in its command line (Chromium's helpers carry
// the profile folder).
bool anyProcessWith(const QByteArray& text) {
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString& pid : pids) {
        QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(pid));
        if (pid.toLongLong() > 0 && cmdline.open(QIODevice::ReadOnly) &&
            cmdline.readAll().contains(text))
            return true;
    }
    return false;
}

} // namespace

TEST_F(RenderEndToEnd, ABrowserPlaysTheMp4AndShowsEachItemAtItsTime) {
    const QString chromium = LocateTool({}, "chromium", "chromium").path;
    ASSERT_FALSE(chromium.isEmpty()) << "the chromium package is not installed";
    studio.renderFormat = RenderFormat::Mp4;
    const RenderReport report = render(threeItemTake());
    ASSERT_TRUE(report.ok()) << report.message.toStdString();

    test::LocalHttpServer server;
    ASSERT_TRUE(server.listen());
    server.addPage("/", kPage);
    server.addFile("/result.mp4", report.output, "video/mp4");
    VirtualDisplay display;
    ASSERT_TRUE(display.start()) << "Xvfb did not start";
    qputenv("DISPLAY", display.display().toLocal8Bit());

    QTemporaryDir profile;
    ToolRunner browser; // Chromium's whole process group goes with it
    ASSERT_TRUE(browser.startProgram(chromium, {"--no-sandbox", "--user-data-dir=" + profile.path(),
                                                "--no-first-run", "--disable-background-networking",
                                                "--disable-component-update", "--disable-sync",
                                                "--disable-gpu", "--disable-quic",
                                                "--autoplay-policy=no-user-gesture-required",
                                                "--window-size=800,600", server.url("/")}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !server.report().isEmpty(); }, 100000))
        << "the page reported nothing; the browser said: "
        << browser.lastResult().errorText.toStdString();
    browser.cancel();
    // The whole process group ends, the helpers with the browser.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !browser.isRunning() && !anyProcessWith(profile.path().toUtf8()); }, 30000));

    const QJsonObject result = QJsonDocument::fromJson(server.report()).object();
    ASSERT_FALSE(result.contains("error")) << result["error"].toString().toStdString();
    EXPECT_NEAR(result["duration"].toDouble(), 4.0, 0.05);
    EXPECT_EQ(result["width"].toInt(), 160);
    EXPECT_GT(server.rangeAnswers(), 0); // the player fetched the file by byte ranges
    const QStringList expected{"black", "red", "green", "blue", "blue"};
    const QJsonArray frames = result["frames"].toArray();
    ASSERT_EQ(frames.size(), expected.size());
    for (qsizetype i = 0; i < frames.size(); ++i) {
        const QJsonObject f = frames[i].toObject();
        EXPECT_EQ(ColourName(QColor(f["r"].toInt(), f["g"].toInt(), f["b"].toInt())), expected[i])
            << "at " << f["t"].toDouble();
    }
}
