#pragma once

#include "captions/CaptionCue.h"

#include <QString>
#include <QStringList>

namespace cq {

// The subtitle files beside a result X: X.srt and X.vtt, with X's base name. They are written
// under partial names first and moved into place right after the result itself, so that the
// pair beside a result is always its own. A result without captions takes an older pair away:
// players load X.srt with X by themselves, and would show another message's words over it.
class CaptionFilesBeside {
public:
    // output: the result's name; partialOutput: the name it is written under until it passed.
    CaptionFilesBeside(QString output, QString partialOutput);
    // Files staged but never published are removed.
    ~CaptionFilesBeside();
    CaptionFilesBeside(const CaptionFilesBeside&) = delete;
    CaptionFilesBeside& operator=(const CaptionFilesBeside&) = delete;

    // Writes both files under their partial names. Returns why not; empty when they were written.
    QString stage(const CaptionCues& cues);
    // Moves the staged files into place; with none staged, removes an older pair beside the
    // result. Returns why not; empty when done.
    QString publish();

private:
    void removeStaged();

    QString m_output;
    QString m_partialOutput;
    QStringList m_staged; // partial files: the SRT, then the WebVTT
};

} // namespace cq
