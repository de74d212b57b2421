#pragma once

#include "app/widgets/TimelineStudio.h"
#include "app/widgets/frmClipquill.h"
#include "studio/AppPaths.h"
#include "support/TestAppFolder.h"
#include "support/TestRows.h"
#include "take/RecordingController.h"
#include "timeline/EventGridModel.h"

#include <QImage>

#include <gtest/gtest.h>

namespace cq::test {

// A recording of two seconds in the window: the voice a tone, one picture of a colour from a
// time in the grid. Fails the test when the media cannot be made.
inline void PrepareOnePictureTake(frmClipquill& w, const TestAppFolder& app, Qt::GlobalColor colour,
                                  qint64 atMs) {
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(colour);
    const QString file = app.file("picture.jpg");
    ASSERT_TRUE(picture.save(file));
    ASSERT_TRUE(MakeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", "-ar", "44100",
                           "-ac", "1", "-c:a", "pcm_s16le", w.paths().gstrRecordedAudioFileSpec}));
    w.timeline().grid().appendRow(Event(MediaKind::Pictures, atMs, file));
    w.timeline().controller().setRecordingLengthMs(2000);
}

} // namespace cq::test
