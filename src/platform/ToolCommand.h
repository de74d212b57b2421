#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace cq {

// One run of one external program, described as data: no shell ever sees it, so no file name
// can run a command or split into two words.
struct ToolCommand {
    // A file the program writes in its private temporary folder, where it then runs, moved onto
    // its destination once the run ends well: a stopped run never leaves half a file there.
    struct KeptOutput {
        QString written;     // the name the program writes, inside the temporary folder
        QString destination; // where it goes, replacing what was there
    };

    QString program;
    QStringList arguments;
    // Every file the program reads; each must be a regular file when the command starts.
    QStringList inputFiles = {};
    // Read as the program's standard input; empty: the input ends at once.
    QString standardInputFile = {};
    QList<KeptOutput> keptOutputs = {};

    // "name" is a FIFO (not a regular file): why an input may not go to the program; empty when
    // every one may. A FIFO would stall it, a device might never end, a folder is no media.
    QString inputProblem() const;
    // The command as one line for a person to read or paste into a terminal: every word quoted
    // where the shell would take it apart, the standard input as a redirection.
    QString commandLine() const;
};

} // namespace cq
