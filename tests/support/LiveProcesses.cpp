#include "support/LiveProcesses.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

namespace cq::test {

namespace {
QByteArray readProc(const QString& pid, const char* what) {
    QFile f(QStringLiteral("/proc/%1/%2").arg(pid, QLatin1String(what)));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
} // namespace

QList<qint64> ProcessesMentioning(const QByteArray& text, qint64 except, const QByteArray& name) {
    QList<qint64> found;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool numeric = false;
        const qint64 pid = entry.toLongLong(&numeric);
        if (!numeric || pid == except)
            continue;
        // "pid (comm) state ...": comm may hold blanks, so the state follows the last ')'.
        const QByteArray stat = readProc(entry, "stat");
        if (stat.isEmpty() || stat.mid(stat.lastIndexOf(')') + 2, 1) == "Z")
            continue;
        if (!name.isEmpty() && readProc(entry, "comm").trimmed() != name)
            continue;
        if (readProc(entry, "cmdline").contains(text))
            found << pid;
    }
    return found;
}

bool Eventually(const std::function<bool()>& condition, int ms) {
    QDeadlineTimer deadline(ms);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
    return true;
}

} // namespace cq::test
