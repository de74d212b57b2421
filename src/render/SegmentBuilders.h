#pragma once

#include "render/MediaFileInfo.h"

#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>

namespace cq {

// What every builder needs to know to write its lines.
struct SegmentContext {
    QString ffmpeg;                 // the program named at the head of each line
    QString gstrTempFilesDirectory; // the work folder
    QString blackBitmap;            // SystemMediaGen/Black.bmp
    QString gstrVideoRes = QStringLiteral("320X240");
    QString gstrFrameRate = QStringLiteral("29.97");

    // "-r RATE -s SIZE" with the rate as ffmpeg needs it.
    QString rateAndSize() const;
};

// A picture of w by h placed on a 4:3 black canvas: taller pictures get bars left and right,
// wider ones above and below; an exact 4:3 picture is its own canvas.
struct FourByThreeFit {
    QSizeF canvas;
    QPointF offset; // where the picture's top left corner goes on the canvas
    bool exact = false;
};
FourByThreeFit FitToFourByThree(int width, int height);

// The files and lines of one still-picture segment.
struct PicSegment {
    QString pictureName; // the picture's file name up to its first "."
    QString bitmapCopy;  // work folder/name.bmp
    QString fittedFrame; // work folder/name-A.bmp
    QString preSegment;  // the segment's name with "Pre" before its extension
    QString source;      // the bitmap copy, or the picture itself when it is a BMP
    bool needsBitmapCopy = false;
    bool reused = false; // the existing segment fits: no lines
    QStringList lines;
};

QString PictureNameOf(const QString& pictureFile);
QString PreSegmentOf(const QString& segmentFile);

// A still picture as a segment of the given seconds at the output rate and size: a silent
// pre-segment from the looped fitted frame, re-encoded into the segment. No lines when
// `existing` (the probe of a segment file already there) has the length within 0.1 s and the
// frame size text exactly equal to gstrVideoRes.
PicSegment MakeAVIFromPic(const SegmentContext& ctx, const QString& picture, const QString& segment,
                          double seconds,
                          const std::optional<MediaFileInfo>& existing = std::nullopt);

// A stretch of a video: start and length are seconds as text, either may be empty. With a
// length the stretch has no sound.
QString ConvertFromToWithTime(const SegmentContext& ctx, const QString& video,
                              const QString& segment, const QString& start, const QString& length);

// A file converted into the format that the target's extension names.
QString ConvertFromTo(const SegmentContext& ctx, const QString& from, const QString& to);

} // namespace cq
