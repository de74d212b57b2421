#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace cq {

// What a file or a click brings on screen. Untyped is a file the browser lists but cannot tell
// the kind of; Audio is heard and never logged; Text and Both are the shown texts (Both is also
// spoken).
enum class MediaKind { Untyped, Video, Audio, Pictures, Text, Both };

inline bool IsTextKind(MediaKind kind) {
    return kind == MediaKind::Text || kind == MediaKind::Both;
}

// One logged item of a recording: what was brought on screen, when, from which file. It is the
// event grid's row, the take journal's entry, and what the render and the captions are made
// from. Its number in the grid is its place, not part of it.
struct TimelineEvent {
    MediaKind kind = MediaKind::Untyped;
    qint64 atMs = 0; // since the recording started
    // Where a video plays from; none: from its beginning.
    std::optional<qint64> startMs;
    QString file;
    QString text; // what a text event shows; empty for the others

    bool isText() const { return IsTextKind(kind); }
    friend bool operator==(const TimelineEvent&, const TimelineEvent&) = default;
};

} // namespace cq
