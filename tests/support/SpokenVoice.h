#pragma once

#include "support/TestAppFolder.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace cq::test {

// The sentence read by the synthetic voice after a second of silence and followed by another,
// written as the studio records (44.1 kHz mono 16-bit WAV).
inline bool MakeSpokenVoice(const QString& sentence, const QString& wav) {
    return MakeMedia(
        {"-f", "lavfi", "-i", QStringLiteral("flite=text='%1':voice=slt").arg(sentence), "-af",
         "adelay=1000,apad=pad_dur=1", "-ar", "44100", "-ac", "1", "-c:a", "pcm_s16le", wav});
}

// Which of the words were heard in the text, in lower case. Recognition misses words, so a test
// asks for some of them, never for all.
inline QStringList WordsHeard(const QString& text, const QStringList& words) {
    static const QRegularExpression notWord(QStringLiteral("[^a-z']+"));
    const QStringList heard = text.toLower().split(notWord, Qt::SkipEmptyParts);
    QStringList found;
    for (const QString& word : words)
        if (heard.contains(word))
            found << word;
    return found;
}

} // namespace cq::test
