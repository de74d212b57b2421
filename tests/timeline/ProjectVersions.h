#pragma once

// Two versions of one recording, told apart by everything a project holds (the voice's length,
// the rows, the text picture and the captions), for the tests that interrupt a save of the
// second over the first.
#include "captions/CaptionCue.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/EventRow.h"

#include <QDir>
#include <QList>

namespace cq::test {

inline QByteArray VersionVoice(int version) {
    const int bytes = version * 8000 * 2;
    return WavHeader(8000, 1, 16, bytes) + QByteArray(bytes, char(version));
}

inline QString VersionPictureName(int version) {
    return version == 1 ? QStringLiteral("One.jpg") : QStringLiteral("Two.jpg");
}

inline QByteArray VersionPicture(int version) {
    return "BM-picture of version " + QByteArray::number(version);
}

// Only the first version has captions: a mix would show them with the second one's rows.
inline CaptionCues VersionCaptions(int version) {
    return version == 1 ? CaptionCues{{0, 500, "one"}} : CaptionCues{};
}

// The voice and the text picture in the work folder, and the rows that name them.
inline QList<EventRow> PrepareVersion(int version, const QString& work, const QString& media) {
    QDir().mkpath(work);
    WriteWholeFile(VersionVoice(version), work + "/RecordedAudio.wav");
    const QString picture = work + u'/' + VersionPictureName(version);
    WriteWholeFile(VersionPicture(version), picture);
    QList<EventRow> rows{{1, "Text", "0.100", "", picture, QString("Version %1").arg(version)}};
    for (int i = 0; i < version; ++i)
        rows << EventRow{i + 2, "Video", QString("0.%100").arg(i + 2), "", media, std::nullopt};
    return rows;
}

} // namespace cq::test
