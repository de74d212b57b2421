#pragma once

#include "captions/CaptionCue.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace cq {

// One word as the recogniser heard it, timed as it was spoken: a cue of one word.
using RecognizedWord = CaptionCue;
using RecognizedWords = CaptionCues;

// How much one caption may hold, so that it can be read in the time it is shown and fits on a
// phone's screen.
struct CueLimits {
    qint64 pauseMs = 500; // a pause this long between two words starts a new cue
    int maxWords = 7;
    qint64 maxSpanMs = 3500;
    int maxLineLength = 42;  // characters a line, two lines a cue
    qint64 minShowMs = 1000; // a short cue stays this long, unless the next one comes sooner
};

// The word as a caption shows it; empty for what the recogniser marks as no speech (<s>, </s>,
// <sil>, [NOISE], ++BREATH++...). "word(2)", an alternate pronunciation, is "word".
QString SpokenWord(const QString& recognized);

// The words in captions: a new cue at a pause, when a cue has its most words or its longest
// span, and when the next word would no longer fit in two lines. Each cue runs from its first
// word's start to its last word's end, a short one longer so that it can be read. Words with no
// spoken text are left out.
CaptionCues CuesFromWords(const RecognizedWords& words, const CueLimits& limits = {});

// The text in at most two lines of at most maxLineLength characters, broken at the space that
// makes the lines most even; whitespace (line breaks too) is collapsed first. A text too long
// for two lines still gets two lines, the second the longer; one without a space stays one line.
QString WrapCaptionLines(const QString& text, int maxLineLength = 42);

// A cue longer than this cannot be read in the time it is shown, and the encoder of a video's
// subtitle track refuses one of many kilobytes.
inline constexpr int kMaxCueCharacters = 300;

// Shortens every cue longer than maxCharacters to its words within the limit, followed by "...".
// Returns a sentence for each shortened cue that names it by its number and start.
QStringList ShortenLongCues(CaptionCues& cues, int maxCharacters = kMaxCueCharacters);

// Whether the text fits in two lines of maxLineLength characters broken at spaces.
bool FitsTwoLines(const QString& text, int maxLineLength = 42);

} // namespace cq
