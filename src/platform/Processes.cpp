#include "platform/Processes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace cq {

namespace {
QByteArray readSmallFile(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.read(4096);
}
} // namespace

qint64 StartProcess(const QString& commandLine) {
    QStringList words = QProcess::splitCommand(commandLine);
    if (words.isEmpty())
        return 0;
    const QString program = words.takeFirst();
    qint64 pid = 0;
    if (!QProcess::startDetached(program, words, QString(), &pid))
        return 0;
    return pid;
}

void RunCommandLine(QString& commandLine) {
    if (commandLine.isEmpty())
        return;
    StartProcess(commandLine);
    commandLine.clear();
    QCoreApplication::processEvents();
}

} // namespace cq
