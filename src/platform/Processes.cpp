#include "platform/Processes.h"

#include "platform/ToolRunner.h"

#include <QProcess>

namespace cq {

qint64 StartProcess(const QString& commandLine) {
    QStringList words = QProcess::splitCommand(commandLine);
    if (words.isEmpty())
        return 0;
    const QString program = words.takeFirst();
    return ToolRunner::startDetached(program, words);
}

void RunCommandLine(QString& commandLine) {
    if (commandLine.isEmpty())
        return;
    StartProcess(commandLine);
    commandLine.clear();
}

} // namespace cq
