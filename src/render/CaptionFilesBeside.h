#pragma once

#include "captions/CaptionCue.h"
#include "render/WrittenFiles.h"

#include <QString>
#include <QStringList>

namespace cq {

// The subtitle files beside a result X: X.srt and X.vtt, with X's base name. They are written
// under partial names first and moved into place right after the result itself, so that the
// pair beside a result is always its own. A result without captions takes an older pair away:
// players load X.srt with X by themselves, and would show another message's words over it.
// Only files the studio wrote there, unchanged since, are replaced or taken away: a user's own
// subtitles stay as they are.
class CaptionFilesBeside {
public:
    // output: the result's name; partialOutput: the name it is written under until it passed;
    // record: where the studio remembers what it wrote (see WrittenFiles).
    CaptionFilesBeside(QString output, QString partialOutput, const QString& record);
    // Files staged but never published are removed.
    ~CaptionFilesBeside();
    CaptionFilesBeside(const CaptionFilesBeside&) = delete;
    CaptionFilesBeside& operator=(const CaptionFilesBeside&) = delete;

    // The files of the pair that stand beside the result but are not the studio's to replace.
    QStringList othersFiles() const;
    // Writes both files under their partial names. Returns why not; empty when they were written.
    QString stage(const CaptionCues& cues);
    // Moves the staged files into place; with none staged, removes an older pair of the studio's
    // beside the result. Returns why not, or which files were left alone; empty when done.
    QString publish();

private:
    void removeStaged();
    QString removeOlderPair();

    QString m_output;
    QString m_partialOutput;
    WrittenFiles m_written;
    QStringList m_staged; // partial files: the SRT, then the WebVTT
};

} // namespace cq
