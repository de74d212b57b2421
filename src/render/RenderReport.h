#pragma once

#include "platform/Job.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

namespace cq {

// How a render ended (its message is what the user is told), with what it made and measured.
struct RenderReport : JobEnd {
    QString output;          // the result, when there is one
    QString logFile;         // the render log, only when it was written
    QStringList failedItems; // files that could not be rendered and show black instead
    qint64 voiceMs = 0;
    qint64 outputMs = -1; // measured lengths of the result and its streams
    qint64 videoMs = -1;
    qint64 audioMs = -1;
    bool lengthOk = false; // every measured length within the tolerance of the voice
    qint64 elapsedMs = 0;
    int reusedPieces = 0;
    int removedOldFiles = 0;       // pieces of older timelines removed after the render
    bool voiceLevelReused = false; // the voice's gain came from an earlier render's measurement

    bool ok() const { return isDone() && lengthOk; }
};

// "4.000s", or "unknown" for a length that could not be measured.
QString RenderLengthText(qint64 ms);

// Why a result was refused: its lengths against the voice, and that the previous file stays.
QString LengthMismatchMessage(const RenderReport& report, const QString& output);

// The items shown black, each with the reason its file could not be rendered.
QString FailedItemsMessage(const QStringList& items, const QStringList& reasons);

} // namespace cq

Q_DECLARE_METATYPE(cq::RenderReport)
