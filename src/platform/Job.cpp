#include "platform/Job.h"

#include <QEventLoop>

#include <algorithm>

namespace cq {

void Job::restartProgress() {
    m_percent = -1;
    setProgress(0);
}

void Job::setProgress(int percent) {
    percent = std::clamp(percent, 0, 100);
    if (percent == m_percent)
        return;
    m_percent = percent;
    emit progressed(percent);
}

void Job::end(const JobEnd& end) {
    m_end = end;
    // A copy: a handler may delete the job, and with it m_end.
    const JobEnd told = end;
    emit ended(told);
}

JobEnd RunToEnd(Job& job, const std::function<void()>& start) {
    bool over = false;
    QEventLoop loop;
    const QMetaObject::Connection watch = QObject::connect(&job, &Job::ended, &loop, [&] {
        over = true;
        loop.quit();
    });
    start();
    if (!over && job.isRunning())
        loop.exec();
    QObject::disconnect(watch);
    return job.lastEnd();
}

} // namespace cq
