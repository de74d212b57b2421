#include "RenderFixture.h"

#include "platform/TextFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace cq;
using test::Event;
using test::RenderEndToEnd;

namespace {

class VoiceSoundRender : public RenderEndToEnd {
protected:
    VoiceSoundRender() { studio.renderFormat = RenderFormat::Mp4; }

    struct Made {
        RenderReport report;
        QString log;
        QString finalLine;
        QStringList keptSounds; // in the work space
    };

    Made renderRows(const QList<TimelineEvent>& rows, const QString& voice) {
        Made made;
        made.report = render(inputsFor(rows, voice));
        EXPECT_TRUE(made.report.ok()) << made.report.message.toStdString();
        made.log = ReadFileToString(made.report.logFile);
        for (const QString& line : made.log.split(u'\n'))
            if (line.contains(QStringLiteral(" final: ")))
                made.finalLine = line;
        made.keptSounds = QFileInfo(made.report.logFile)
                              .dir()
                              .entryList({QStringLiteral("VoiceSound-*")}, QDir::Files);
        return made;
    }
};

} // namespace

TEST_F(VoiceSoundRender, IsEncodedOnceBesideThePiecesAndCopiedByTheJoinUntilItsTreatmentChanges) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 2.0, 500);

    const Made first = renderRows(rows, voice);
    EXPECT_TRUE(first.log.contains("voice sound: "));
    EXPECT_TRUE(first.finalLine.contains("-c:a copy")) << first.finalLine.toStdString();
    EXPECT_FALSE(first.finalLine.contains("-c:a aac")) << first.finalLine.toStdString();
    // The encoder's priming and padding must not lengthen the copied sound.
    EXPECT_LE(std::llabs(first.report.audioMs - first.report.voiceMs), 30);
    EXPECT_EQ(first.keptSounds.size(), 1);

    const Made again = renderRows(rows, voice);
    EXPECT_FALSE(again.log.contains("voice sound: "));
    EXPECT_TRUE(again.log.contains("voice sound kept"));
    EXPECT_TRUE(again.finalLine.contains("-c:a copy"));

    // The voice as recorded is another sound; only the one in use stays.
    studio.evenVoice = false;
    const Made raw = renderRows(rows, voice);
    EXPECT_TRUE(raw.log.contains("voice sound: "));
    EXPECT_EQ(raw.keptSounds.size(), 1);
    EXPECT_NE(raw.keptSounds, first.keptSounds);

    // A video's own sound under the voice is mixed, and so encoded, by the join itself.
    const QString clip = mediaFile("green.avi");
    ASSERT_TRUE(media.toneVideo(clip, "green", 1.0, 1000));
    studio.keepVideoSound = true;
    const Made mixed = renderRows({Event(MediaKind::Video, 500, clip)}, voice);
    EXPECT_FALSE(mixed.log.contains("voice sound: "));
    EXPECT_TRUE(mixed.finalLine.contains("amix")) << mixed.finalLine.toStdString();
    EXPECT_TRUE(mixed.finalLine.contains("-c:a aac")) << mixed.finalLine.toStdString();
}

// A kept sound cut short since it was made (a crash, a full disk) is found out before the join
// copies it, and made again: the render that finds it comes out whole.
TEST_F(VoiceSoundRender, AKeptSoundCutShortIsMadeAgainInEitherFormat) {
    const QString voice = mediaFile("RecordedAudio.wav");
    const QList<TimelineEvent> rows = redPictureTake(voice, 4.0, 500);
    for (const RenderFormat format : {RenderFormat::Avi, RenderFormat::Mp4}) {
        studio.renderFormat = format;
        const char* name = format == RenderFormat::Avi ? "AVI" : "MP4";
        const Made first = renderRows(rows, voice);
        ASSERT_EQ(first.keptSounds.size(), 1) << name;
        const QString kept =
            QFileInfo(first.report.logFile).dir().filePath(first.keptSounds.first());
        for (const qint64 size : {QFileInfo(kept).size() / 2, QFileInfo(kept).size() - 5}) {
            ASSERT_TRUE(QFile::resize(kept, size)) << name;
            const Made again = renderRows(rows, voice);
            EXPECT_TRUE(again.log.contains("is made again")) << name << " " << size;
            EXPECT_TRUE(again.log.contains("voice sound: ")) << name << " " << size;
            EXPECT_LE(std::llabs(again.report.audioMs - again.report.voiceMs), 100) << name;
        }
        EXPECT_TRUE(renderRows(rows, voice).log.contains("voice sound kept")) << name;
    }
}
