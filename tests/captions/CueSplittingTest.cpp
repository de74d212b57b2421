#include "captions/CueSplitting.h"
#include "captions/TextRowCues.h"
#include "captions/VoiceSplitting.h"
#include "support/CuePrinting.h"
#include "support/TestAppFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

// Words of 300 ms with 100 ms between them, starting at startMs.
RecognizedWords Spoken(const QString& sentence, qint64 startMs = 0) {
    RecognizedWords words;
    qint64 at = startMs;
    for (const QString& word : sentence.split(u' ')) {
        words << RecognizedWord{at, at + 300, word};
        at += 400;
    }
    return words;
}

QStringList Texts(const CaptionCues& cues) {
    QStringList texts;
    for (const CaptionCue& cue : cues)
        texts << cue.text;
    return texts;
}

TimelineEvent TextRow(MediaKind kind, qint64 atMs, const QString& text = {}) {
    return {kind, atMs, std::nullopt, QStringLiteral("/work/text.bmp"), text};
}

} // namespace

TEST(CuesFromWords, APauseOrAFullCueStartsTheNext) {
    RecognizedWords words = Spoken(QStringLiteral("hello there"));
    words << Spoken(QStringLiteral("after a pause"), 700 + 500); // 500 ms after "there" ended
    CaptionCues cues = CuesFromWords(words);
    // "hello there" is spoken until 700 and shown for a second.
    EXPECT_EQ(cues, (CaptionCues{{0, 1000, "hello there"}, {1200, 2300, "after a pause"}}));

    // Nine quick words: seven in the first cue.
    cues = CuesFromWords(Spoken(QStringLiteral("one two three four five six seven eight nine")));
    EXPECT_EQ(Texts(cues), (QStringList{"one two three four five six seven", "eight nine"}));

    // Slow words: no cue spans more than 3.5 s.
    RecognizedWords slow;
    for (int i = 0; i < 6; ++i)
        slow << RecognizedWord{i * 900, i * 900 + 800, QStringLiteral("slow")};
    cues = CuesFromWords(slow);
    ASSERT_EQ(cues.size(), 2);
    EXPECT_LE(cues[0].endMs - cues[0].startMs, 3500);
    EXPECT_EQ(cues[1].startMs, 3600);
}

TEST(CuesFromWords, LongWordsKeepEachCueInTwoShortLines) {
    const CaptionCues cues = CuesFromWords(Spoken(
        QStringLiteral("internationalisation responsibilities extraordinarily characteristically "
                       "incomprehensibilities")));
    ASSERT_GE(cues.size(), 2);
    for (const CaptionCue& cue : cues) {
        const QStringList lines = cue.text.split(u'\n');
        EXPECT_LE(lines.size(), 2) << cue.text.toStdString();
        for (const QString& line : lines)
            EXPECT_LE(line.size(), 42) << cue.text.toStdString();
    }
}

TEST(CuesFromWords, NoSpeechMarksAreDroppedAndAlternatesNamedPlainly) {
    RecognizedWords words{{0, 100, "<s>"},       {100, 400, "read(2)"}, {400, 500, "<sil>"},
                          {500, 800, "[NOISE]"}, {800, 1000, "it"},     {1000, 1100, "++BREATH++"},
                          {1100, 1200, "</s>"}};
    const CaptionCues cues = CuesFromWords(words);
    ASSERT_EQ(cues.size(), 1);
    EXPECT_EQ(cues[0], (CaptionCue{100, 1100, "read it"}));
    EXPECT_TRUE(CuesFromWords({{0, 100, "<sil>"}}).isEmpty());
}

TEST(CuesFromWords, AShortCueStaysLongEnoughToReadButNeverOverTheNext) {
    const CaptionCues cues = CuesFromWords(
        {{0, 300, "yes"}, {900, 1200, "no"}, {5000, 5400, "maybe"}, {5400, 7000, "later"}});
    // The first until the next cue, the second a second long, the third long enough already.
    EXPECT_EQ(cues, (CaptionCues{{0, 900, "yes"}, {900, 1900, "no"}, {5000, 7000, "maybe later"}}));
}

TEST(WrapCaptionLines, BreaksEvenlyWithinTheLimitWherePossible) {
    EXPECT_EQ(WrapCaptionLines(QStringLiteral("  short\r\ntext ")), QStringLiteral("short text"));
    const QString wrapped =
        WrapCaptionLines(QStringLiteral("The garden is in full bloom and the bees are busy today"));
    EXPECT_EQ(wrapped, QStringLiteral("The garden is in full bloom\nand the bees are busy today"));
    // A first word longer than a line: broken after it.
    EXPECT_EQ(WrapCaptionLines(QString(45, u'x') + QStringLiteral(" is a word")),
              QString(45, u'x') + QStringLiteral("\nis a word"));
    // Too long for two lines: still two lines, the first within the limit.
    const QString tooLong =
        WrapCaptionLines(QString(20, u'x').append(QStringLiteral(" word")).repeated(5));
    const QStringList lines = tooLong.split(u'\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_LE(lines[0].size(), 42);
    EXPECT_EQ(WrapCaptionLines(QString(60, u'x')), QString(60, u'x'));
}

TEST(ShortenLongCues, OnlyCuesOverTheLimitAreCutAtAWordAndNamed) {
    const QString words = QStringLiteral("word ").repeated(20000);    // 100 kB
    const QString faces = QStringLiteral("\U0001F600").repeated(400); // no space, two units each
    CaptionCues cues{{0, 1000, "short"},
                     {1000, 2000, words},
                     {2000, 3000, QString(kMaxCueCharacters, u'a')},
                     {61500, 62000, faces}};
    const QStringList notes = ShortenLongCues(cues);
    ASSERT_EQ(notes.size(), 2);
    EXPECT_TRUE(notes[0].startsWith("Caption 2 (at 00:00:01,000) had 100000 characters"))
        << notes[0].toStdString();
    EXPECT_TRUE(notes[1].startsWith("Caption 4 (at 00:01:01,500) had 800 characters"))
        << notes[1].toStdString();
    EXPECT_EQ(cues[0].text, "short");
    EXPECT_EQ(cues[2].text.size(), kMaxCueCharacters);
    for (const int i : {1, 3}) {
        EXPECT_LE(cues[i].text.size(), kMaxCueCharacters);
        EXPECT_GT(cues[i].text.size(), kMaxCueCharacters / 2);
        EXPECT_TRUE(cues[i].text.endsWith("...")) << i;
    }
    EXPECT_TRUE(cues[1].text.chopped(3).endsWith("word")); // cut between words
    EXPECT_TRUE(cues[3].text.chopped(3).endsWith(QStringLiteral("\U0001F600"))); // never in a pair
}

TEST(CuesFromTextRows, EachTextShowsFromItsRowUntilTheNextRow) {
    const QList<TimelineEvent> rows{
        TextRow(MediaKind::Video, 0),
        TextRow(MediaKind::Text, 2345, QStringLiteral("First slide")),
        TextRow(MediaKind::Pictures, 5000),
        TextRow(MediaKind::Both, 7050,
                QStringLiteral("A slide that is read aloud, and it is long enough "
                               "to need a second line")),
        TextRow(MediaKind::Text, 9000, QStringLiteral("   ")),       // no words: no cue
        TextRow(MediaKind::Text, 12000, QStringLiteral("Replaced")), // replaced at its own time
        TextRow(MediaKind::Text, 12000, QStringLiteral("Last")),
    };
    const CaptionCues cues = CuesFromTextRows(rows, 15500);
    ASSERT_EQ(cues.size(), 3);
    EXPECT_EQ(cues[0], (CaptionCue{2345, 5000, "First slide"}));
    EXPECT_EQ(cues[1].startMs, 7050);
    EXPECT_EQ(cues[1].endMs, 9000);
    EXPECT_EQ(cues[1].text.count(u'\n'), 1);
    EXPECT_EQ(cues[2], (CaptionCue{12000, 15500, "Last"}));
    EXPECT_TRUE(
        CuesFromTextRows({TextRow(MediaKind::Text, 20000, QStringLiteral("After the end"))}, 15500)
            .isEmpty());
}

TEST(VoiceSplitting, UtterancesEndAtAPauseOrAtTheirLongest) {
    UtteranceCutter cutter;
    int chunk = 0;
    // Loud for 4 s, then quiet: ends on the third quiet chunk.
    for (; chunk < 40; ++chunk)
        EXPECT_FALSE(cutter.endsAfter(5000));
    EXPECT_FALSE(cutter.endsAfter(100));
    EXPECT_FALSE(cutter.endsAfter(0));
    EXPECT_TRUE(cutter.endsAfter(200));
    // A pause early in an utterance does not end it; speech without pause ends at the longest.
    UtteranceCutter fresh;
    EXPECT_FALSE(fresh.endsAfter(5000));
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(fresh.endsAfter(0));
    int ended = -1;
    for (int i = 6; i < 400 && ended < 0; ++i)
        if (fresh.endsAfter(4000 + i % 7 * 500))
            ended = i;
    EXPECT_EQ(ended, UtteranceCutter::Limits{}.maxChunks - 1);
}

TEST(VoiceSplitting, SpansAreCutInTheQuietestPlaceNearTheMiddle) {
    QTemporaryDir dir;
    const QString raw = dir.filePath("voice.raw");
    // 20 s of loud noise with one quiet chunk at 11.3 s.
    QList<qint16> samples(20 * kSpeechSamplesPerSecond);
    for (qsizetype i = 0; i < samples.size(); ++i)
        samples[i] = qint16((i * 7919) % 20000 - 10000);
    const qsizetype quietAt = 113 * kSpeechChunkSamples;
    std::fill(samples.begin() + quietAt, samples.begin() + quietAt + kSpeechChunkSamples, 0);
    test::WriteFile(
        raw, QByteArray(reinterpret_cast<const char*>(samples.constData()), samples.size() * 2));
    EXPECT_EQ(VoiceSpanBounds(raw, samples.size(), 2),
              (QList<qint64>{0, quietAt + kSpeechChunkSamples / 2, samples.size()}));
    EXPECT_EQ(VoiceSpanBounds(raw, samples.size(), 1), (QList<qint64>{0, samples.size()}));
    EXPECT_EQ(QuietestChunk({3, 1, 2, 1}), 1);
}
