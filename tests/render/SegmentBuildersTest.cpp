#include "render/SegmentBuilders.h"

#include "platform/TextFiles.h"
#include "render/ToolRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

SegmentContext context(const QString& ffmpeg = QStringLiteral("/app/System/ffmpeg")) {
    SegmentContext ctx;
    ctx.ffmpeg = ffmpeg;
    ctx.gstrTempFilesDirectory = QStringLiteral("/app/ClipquillTempFiles");
    ctx.blackBitmap = QStringLiteral("/app/SystemMediaGen/Black.bmp");
    return ctx;
}

const QStringList kHostileNames{QStringLiteral("double \"quote\""),
                                QStringLiteral("it's"),
                                QStringLiteral("$(touch INJECTED)"),
                                QStringLiteral("`touch INJECTED`"),
                                QStringLiteral("semi; touch INJECTED;"),
                                QStringLiteral("two  blanks"),
                                QStringLiteral("Zoë Vidéo")};

} // namespace

TEST(FourByThreeFit, CentresTallAndWidePicturesOnBlack) {
    const FourByThreeFit exact = FitToFourByThree(640, 480);
    EXPECT_TRUE(exact.exact);
    EXPECT_EQ(exact.canvas, QSizeF(640, 480));

    const FourByThreeFit portrait = FitToFourByThree(480, 640);
    EXPECT_FALSE(portrait.exact);
    EXPECT_NEAR(portrait.canvas.width(), 853.33, 0.01);
    EXPECT_EQ(portrait.canvas.height(), 640);
    EXPECT_NEAR(portrait.offset.x(), (853.333 - 480) / 2, 0.01);
    EXPECT_EQ(portrait.offset.y(), 0);

    const FourByThreeFit wide = FitToFourByThree(800, 300);
    EXPECT_EQ(wide.canvas, QSizeF(800, 600));
    EXPECT_EQ(wide.offset, QPointF(0, 150));
}

TEST(SegmentBuilders, DerivedNames) {
    EXPECT_EQ(PreSegmentOf("C:\\w\\10.avi"), "C:\\w\\10Pre.avi");
    EXPECT_EQ(PreSegmentOf("/w/3.avi"), "/w/3Pre.avi");
    EXPECT_EQ(PictureNameOf("/home/u/Holiday.2008.jpg"), "Holiday");
    EXPECT_EQ(PictureNameOf("C:\\pics\\Sea.JPG"), "Sea");
    const PicSegment s = MakeAVIFromPic(context(), "/p/Sea.JPG", "/w/2.avi", 4);
    EXPECT_EQ(s.bitmapCopy, "/app/ClipquillTempFiles/Sea.bmp");
    EXPECT_EQ(s.fittedFrame, "/app/ClipquillTempFiles/Sea-A.bmp");
    EXPECT_EQ(s.source, s.bitmapCopy);
    EXPECT_EQ(MakeAVIFromPic(context(), "/p/Sea.bmp", "/w/2.avi", 4).source, "/p/Sea.bmp");
}

TEST(SegmentBuilders, StillPictureLinesLoopTheFittedFrame) {
    const PicSegment s = MakeAVIFromPic(context(), "/p/Sea.jpg", "/w/2.avi", 7);
    ASSERT_EQ(s.lines.size(), 2);
    EXPECT_EQ(s.lines[0], "'/app/System/ffmpeg' -loop 1 -t 00:00:07. -i "
                          "'/app/ClipquillTempFiles/Sea-A.bmp' -an -r 30000/1001 -s 320X240 -y "
                          "'/w/2Pre.avi'");
    EXPECT_EQ(s.lines[1], "'/app/System/ffmpeg' -i '/w/2Pre.avi' -r 30000/1001 -s 320X240 -y "
                          "'/w/2.avi'");
}

TEST(SegmentBuilders, ExistingSegmentIsReusedOnlyWithSameLengthAndExactSizeText) {
    MediaFileInfo existing;
    existing.Duration = QStringLiteral("5.05");
    existing.FrameSize = QStringLiteral("320x240");
    EXPECT_FALSE(MakeAVIFromPic(context(), "/p/a.jpg", "/w/1.avi", 5, existing).reused);
    SegmentContext lower = context();
    lower.gstrVideoRes = QStringLiteral("320x240");
    EXPECT_TRUE(MakeAVIFromPic(lower, "/p/a.jpg", "/w/1.avi", 5, existing).reused);
    EXPECT_TRUE(MakeAVIFromPic(lower, "/p/a.jpg", "/w/1.avi", 5, existing).lines.isEmpty());
    EXPECT_FALSE(MakeAVIFromPic(lower, "/p/a.jpg", "/w/1.avi", 5.2, existing).reused);
    existing.Duration.clear(); // "N/A"
    EXPECT_FALSE(MakeAVIFromPic(lower, "/p/a.jpg", "/w/1.avi", 5, existing).reused);
}

TEST(SegmentBuilders, FourCutForms) {
    const SegmentContext ctx = context();
    EXPECT_EQ(ConvertFromToWithTime(ctx, "/v/a.avi", "/w/3.avi", "", ""),
              "'/app/System/ffmpeg' -i '/v/a.avi' -y '/w/3.avi'");
    EXPECT_EQ(ConvertFromToWithTime(ctx, "/v/a.avi", "/w/3.avi", "12.5", ""),
              "'/app/System/ffmpeg' -ss 00:00:12.5 -i '/v/a.avi' -y '/w/3.avi'");
    EXPECT_EQ(ConvertFromToWithTime(ctx, "/v/a.avi", "/w/3.avi", "", "4"),
              "'/app/System/ffmpeg' -an -t 00:00:04. -i '/v/a.avi' -y '/w/3.avi'");
    EXPECT_EQ(ConvertFromToWithTime(ctx, "/v/a.avi", "/w/3.avi", "12.345", "4"),
              "'/app/System/ffmpeg' -an -ss 00:00:12.345 -t 00:00:04. -i '/v/a.avi' -y "
              "'/w/3.avi'");
    EXPECT_EQ(ConvertFromTo(ctx, "/w/1.avi", "/w/1.mpg"),
              "'/app/System/ffmpeg' -i '/w/1.avi'  -y '/w/1.mpg'");
}

TEST(SegmentBuilders, HostileNamesReachTheToolAsSingleWordsAndRunNothing) {
    // A stand-in ffmpeg that writes each argument it receives on a line of its own.
    QTemporaryDir dir;
    const QString fake = dir.filePath("fake ffmpeg");
    const QString record = dir.filePath("args.txt");
    QFile f(fake);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QStringLiteral("#!/bin/sh\nfor a in \"$@\"; do printf '%s\\n' \"$a\"; done >> '%1'\n")
                .arg(record)
                .toUtf8());
    f.close();
    f.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    SegmentContext ctx = context(fake);
    ctx.gstrTempFilesDirectory = dir.path();
    for (const QString& name : kHostileNames) {
        QFile::remove(record);
        const QString video = dir.filePath(name + ".avi");
        const QString segment = dir.filePath(name + " seg.avi");
        const PicSegment pic = MakeAVIFromPic(ctx, dir.filePath(name + ".jpg"), segment, 2);
        const QString script = pic.lines.join('\n') + '\n' +
                               ConvertFromToWithTime(ctx, video, segment, "1", "2") + '\n' +
                               ConvertFromTo(ctx, segment, dir.filePath(name + ".mpg"));
        ToolRunner runner;
        ASSERT_TRUE(runner.runScript(script, dir.filePath("c.sh")).ok()) << name.toStdString();
        const QStringList args = ReadFileToString(record).split('\n');
        EXPECT_TRUE(args.contains(pic.fittedFrame)) << name.toStdString();
        EXPECT_TRUE(args.contains(pic.preSegment));
        EXPECT_TRUE(args.contains(video));
        EXPECT_EQ(args.count(segment), 3);
        EXPECT_TRUE(args.contains(dir.filePath(name + ".mpg")));
        EXPECT_FALSE(QFileInfo::exists(dir.filePath("INJECTED")));
        EXPECT_FALSE(QFileInfo::exists("INJECTED"));
    }
}
