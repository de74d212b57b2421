#pragma once

#include <QString>

#include <optional>

namespace cq {

// One row of the event grid: what was brought on screen, when, from which file. Its text form
// is the grid's tab-separated row: count, type, time, begin position, file, and for a text
// event the text itself.
struct EventRow {
    int mediaCount = 0;
    QString mediaType;  // "Video", "Pictures", "Text", "Both", or empty for an untyped file
    QString timeLine;   // seconds since the recording started, "65.000"
    QString begVideoAt; // a video's start position in seconds as its caller wrote it, or empty
    QString fileSpec;
    std::optional<QString> text; // text events only

    // The row's line. A field holding a tab, a line end or another control character would
    // break the line (and the file it is in), so such characters are written as U+FFFD: a
    // caller that logs rows refuses such names before they get here (see controlCharacterIn).
    QString rowText() const;
    // Parses a row text; on failure returns nothing and says why in *error.
    static std::optional<EventRow> fromRowText(const QString& rowText, QString* error = nullptr);

    // Whether a file name or text holds a character no row may: a tab, a line end or any other
    // control character.
    static bool controlCharacterIn(const QString& field);

    qint64 timeMs() const;       // -1 when the time text is not a number
    qint64 begVideoAtMs() const; // -1 when empty or not a number
    bool isTextEvent() const { return mediaType == u"Text" || mediaType == u"Both"; }
};

} // namespace cq
