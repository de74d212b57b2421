#pragma once

#include "platform/ToolCommand.h"

#include <QString>
#include <QStringList>

namespace cq {

// The start of one ffmpeg run of the render: its inputs, each with the options that read it, in
// the order they were added. A stream is named by the index add() gave its input, never by
// counting the inputs before it.
class FfmpegInputs {
public:
    // Adds a file read with these options (given before its "-i"); returns its index.
    int add(const QString& file, const QStringList& options = {});
    // "2:s": the input's stream of a kind ('v', 'a', 's'), as a map names it.
    static QString stream(int input, char kind);
    // "[2:a]": the same as a filter graph names it.
    static QString label(int input, char kind) { return u'[' + stream(input, kind) + u']'; }
    // ffmpeg, not reading the terminal, at this log level (quiet but for errors unless a
    // measurement reads what it prints), then every input; the caller appends the outputs.
    ToolCommand command(const QString& ffmpeg, const QStringList& logLevel = {"-v", "error"}) const;

private:
    QStringList m_arguments;
    int m_count = 0;
};

} // namespace cq
