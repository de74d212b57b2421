#pragma once

// Two versions of one recording, told apart by everything a project holds (the voice's length,
// the rows, the text picture and the captions), for the tests that interrupt a save of the
// second over the first.
#include "captions/CaptionCue.h"
#include "platform/TextFiles.h"
#include "platform/WavFormat.h"
#include "studio/TimelineEvent.h"

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
inline QList<TimelineEvent> PrepareVersion(int version, const QString& work, const QString& media) {
    QDir().mkpath(work);
    WriteWholeFile(VersionVoice(version), work + "/RecordedAudio.wav");
    const QString picture = work + u'/' + VersionPictureName(version);
    WriteWholeFile(VersionPicture(version), picture);
    QList<TimelineEvent> rows{
        {MediaKind::Text, 100, std::nullopt, picture, QString("Version %1").arg(version)}};
    for (int i = 0; i < version; ++i)
        rows << TimelineEvent{MediaKind::Video, (i + 2) * 100, std::nullopt, media, {}};
    return rows;
}

} // namespace cq::test
