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

bool IsProcessFinishedRunning(const QString& processName) {
    const QString wanted = processName.toLower();
    const QStringList entries =
        QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        bool isPid = false;
        entry.toLongLong(&isPid);
        if (!isPid)
            continue;
        const QString base = QStringLiteral("/proc/") + entry;
        const QString comm =
            QString::fromUtf8(readSmallFile(base + QStringLiteral("/comm"))).trimmed();
        if (comm.toLower() == wanted)
            return false;
        const QByteArray cmdline = readSmallFile(base + QStringLiteral("/cmdline"));
        const QByteArray argv0 = cmdline.left(cmdline.indexOf('\0'));
        if (!argv0.isEmpty() && QFileInfo(QString::fromUtf8(argv0)).fileName().toLower() == wanted)
            return false;
    }
    return true;
}

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
