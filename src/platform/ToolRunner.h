#pragma once

#include "platform/ToolCommand.h"

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

namespace cq {

struct RunResult {
    enum class Outcome { Finished, Failed, Cancelled };
    Outcome outcome = Outcome::Failed;
    int exitCode = -1;
    QString errorText; // the tail of what the run wrote to stderr, or why it could not start

    bool ok() const { return outcome == Outcome::Finished; }
    bool cancelled() const { return outcome == Outcome::Cancelled; }
    // Why the run failed, in one line: the last it wrote to stderr, else its exit code.
    QString lastErrorLine() const;
};

// The one way the studio starts an external program. Runs one command at a time, the program
// started directly from its argument list in a process group of its own. Waiting never blocks the
// event loop; cancel stops the whole group (SIGTERM, then SIGKILL after a grace period). Output
// arrives line by line for progress parsing.
//
// Tools never outlive the studio: a run's group is killed when the run ends and when the runner
// is destroyed, and the program gets the parent-death signal, should the studio itself be killed.
// That signal follows the thread that started the program, so tools are started from the main
// thread only, which lives as long as the studio. The runner may be deleted, or start its next
// run, from any of its own signals.
class ToolRunner : public QObject {
    Q_OBJECT
public:
    explicit ToolRunner(QObject* parent = nullptr);
    ~ToolRunner() override;

    // Gives every later run a temporary folder of its own inside the given folder (made when
    // missing): TMPDIR and MAGICK_TEMPORARY_PATH point there, and it goes when the run ends,
    // however it ends (finished, failed, cancelled, the runner destroyed; what a killed studio
    // left goes at its next start). Empty: runs use the common temporary folder.
    void setTemporaryFolderIn(const QString& workSpace) { m_workSpace = workSpace; }
    // Every private temporary folder's name begins with this, followed by the studio's process
    // id; what a killed studio left behind is found by it.
    static QString temporaryFolderPrefix() { return QStringLiteral("cq-run-"); }
    // Removes the private temporary folders in the work space whose studio has ended; those of
    // a studio still running stay. Returns how many went.
    static int removeLeftTemporaryFolders(const QString& workSpace);

    // Starts the command. An input that is not a regular file, or a program that cannot start,
    // ends the run at once with a Failed result (finished comes from inside) and false.
    bool start(const ToolCommand& command);
    // A command of a program and its arguments alone.
    bool startProgram(const QString& program, const QStringList& arguments) {
        return start({program, arguments});
    }
    // Starts a program that hands the user's work to another of the user's programs (xdg-email
    // opening the mail client): waited for like any run, but what it leaves running belongs to
    // the user and stays when the runner or the studio goes. Cancel still stops it.
    bool startHandOver(const QString& program, const QStringList& arguments);
    // Returns when the job has ended, running a local event loop meanwhile. For headless
    // commands and tests only: the window's handlers connect to finished instead.
    RunResult waitForFinished();

    RunResult run(const ToolCommand& command);
    RunResult runProgram(const QString& program, const QStringList& arguments) {
        return run({program, arguments});
    }

    void cancel();
    bool isRunning() const;
    RunResult lastResult() const { return m_result; }
    QByteArray standardOutput() const { return m_stdout; }
    void setKillGraceMilliseconds(int ms) { m_killGraceMs = ms; }

    // A program that lives on its own (a browser, the mixer, the FTP program): not waited for,
    // not stopped with the studio, its output discarded. No shell sees its arguments. Returns the
    // process id, 0 when it could not start.
    static qint64 startDetached(const QString& program, const QStringList& arguments,
                                const QString& workingFolder = QString());

signals:
    void outputLine(const QString& line); // stdout, split at CR or LF
    void errorLine(const QString& line);  // stderr, split at CR or LF
    void finished(const cq::RunResult& result);

private:
    bool makeTemporaryFolder();
    void removeTemporaryFolder();
    bool failToStart(const QString& why);
    bool startProcess(const ToolCommand& command, bool handOver);
    // The process with its environment and its place in a group of its own, not yet started.
    void makeProcess(const ToolCommand& command, bool handOver);
    void connectProcess();
    // Forgets what the last run left: output, result, flags.
    void resetRun(const ToolCommand& command, bool handOver);
    // Moves what the run kept in its temporary folder into place; why one could not go.
    QString moveKeptOutputs() const;
    void releaseProcess();
    // Runs a handler of the process's signals; the runner may be gone when it returns.
    void deliver(const std::function<void()>& handler);
    bool readChannel(QProcess::ProcessChannel channel);
    bool flushPartialLines();
    void onFinished(int exitCode, QProcess::ExitStatus status);
    void onErrorOccurred(QProcess::ProcessError error);
    void signalGroup(int signal);
    void finish(RunResult result);

    QProcess* m_process = nullptr;
    QTimer m_killTimer;
    QByteArray m_stdout;
    QByteArray m_stderrTail;
    QByteArray m_partial[2];
    RunResult m_result;
    qint64 m_pid = 0;
    bool m_running = false;
    bool m_handOver = false;
    bool m_cancelRequested = false;
    int m_delivering = 0; // > 0 while one of the process's signals is being handled
    int m_killGraceMs = 3000;
    QString m_workSpace;
    QString m_temporaryFolder;
    QList<ToolCommand::KeptOutput> m_keptOutputs;
};

} // namespace cq

Q_DECLARE_METATYPE(cq::RunResult)
