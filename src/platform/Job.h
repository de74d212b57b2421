#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

#include <functional>

namespace cq {

// How one run of background work ended: its work done, failed, or cancelled. A failure's
// message says why, in words for the user; a job that did its work may still have something to
// tell (a render's items shown black), and a cancelled one usually has nothing to say.
struct JobEnd {
    enum class Outcome { Done, Failed, Cancelled };
    // Until a job says otherwise, it has not done its work.
    Outcome outcome = Outcome::Failed;
    QString message;

    static JobEnd done(QString message = {}) { return {Outcome::Done, std::move(message)}; }
    static JobEnd failed(QString message) { return {Outcome::Failed, std::move(message)}; }
    static JobEnd cancelled(QString message = {}) {
        return {Outcome::Cancelled, std::move(message)};
    }
    bool isDone() const { return outcome == Outcome::Done; }
    bool isFailed() const { return outcome == Outcome::Failed; }
    bool isCancelled() const { return outcome == Outcome::Cancelled; }
};

// The shape of every piece of work that runs beside the window (a render, a conversion, a
// recognition, thumbnails, the voice's measurement): it says how far it has come in whole
// percent, only when that changes, and every run it starts ends with exactly one ended. What the
// work made (a report, cues, a file) is asked of the job once it has ended.
class Job : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual bool isRunning() const = 0;
    // The run ends with Cancelled, unless it was just ending otherwise.
    virtual void cancel() = 0;
    // How the last run ended; Failed with no message before any run ended.
    const JobEnd& lastEnd() const { return m_end; }

signals:
    void progressed(int percent);
    void ended(const cq::JobEnd& end);

protected:
    // A new run starts from nothing: 0 is told again even when the last run said it.
    void restartProgress();
    // Clamped to 0..100; told only when it differs from what was told last.
    void setProgress(int percent);
    // Keeps how the run ended and tells it. A job's handlers may delete it.
    void end(const JobEnd& end);

private:
    int m_percent = -1;
    JobEnd m_end;
};

// Starts the job through start and lets the event loop run until the job has ended; for callers
// without a window (the command line, benchmarks), never for the window's own work.
JobEnd RunToEnd(Job& job, const std::function<void()>& start);

} // namespace cq

Q_DECLARE_METATYPE(cq::JobEnd)
