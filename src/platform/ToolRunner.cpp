#include "platform/ToolRunner.h"

#include "platform/ScriptFile.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QSet>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/types.h>
#include <unistd.h>

namespace cq {

QString RunResult::lastErrorLine() const {
    const QStringList lines = errorText.trimmed().split(u'\n', Qt::SkipEmptyParts);
    return lines.isEmpty() ? QStringLiteral("the tool ended with exit code %1").arg(exitCode)
                           : lines.last().trimmed();
}

namespace {

constexpr qsizetype kMaxKeptError = 64 * 1024;
constexpr qsizetype kMaxKeptOutput = 4 * 1024 * 1024;

// The processes of runners that went before the event loop reaped them. Each deletes itself once
// reaped; the ones still waiting when the program leaves stay listed here, not lost.
QSet<QProcess*>& Unreaped() {
    static auto* processes = new QSet<QProcess*>;
    return *processes;
}

// The shell that runs a script first leaves a guard in the group: it holds the read end of the
// pipe whose write end only the studio holds (the script's stdin, never written). The guard's
// read returns when that pipe closes, that is when the studio dies, however it dies; the guard
// then kills the whole group. Signals meant for the script do not stop the guard. The script
// itself and its tools read /dev/null. Given a private temporary folder ($1), the guard first
// leaves a remover in a session of its own, which outlives the group and deletes the folder once
// the killed tools have gone. The folder goes to it in the environment: the remover's command line
// names nothing of the studio's, so it does not pass for one of the studio's tools.
const QString kGuardedStart =
    QStringLiteral("exec 3<&0 </dev/null\n"
                   "{ trap '' HUP INT TERM; read -r _ <&3\n"
                   "  [ -z \"$1\" ] || CQ_LEFT=\"$1\" setsid /bin/sh -c "
                   "'(sleep 1; rm -rf -- \"$CQ_LEFT\"; sleep 2; rm -rf -- \"$CQ_LEFT\") &'\n"
                   "  kill -KILL 0; } >/dev/null 2>&1 </dev/null &\n"
                   "exec 3<&-\n"
                   "exec /bin/sh \"$0\"\n");

// Splits off every complete line (CR or LF ends one) and leaves the rest in partial.
QStringList takeLines(QByteArray& partial) {
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < partial.size(); ++i) {
        if (partial[i] != '\n' && partial[i] != '\r')
            continue;
        if (i > start)
            lines << QString::fromUtf8(partial.mid(start, i - start));
        start = i + 1;
    }
    partial.remove(0, start);
    return lines;
}

// Removes the folder; when a tool of a killed group is still writing into it, a remover of its
// own deletes it a moment later, when the group has gone. That also holds while the studio ends,
// with no event loop left to try again. The remover gets the folder in its environment, so its
// command line names nothing of the studio's.
void RemoveFolderSoon(const QString& folder) {
    if (QDir(folder).removeRecursively())
        return;
    QProcess remover;
    remover.setProgram(QStringLiteral("setsid"));
    remover.setArguments({QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                          QStringLiteral("sleep 1; rm -rf -- \"$CQ_LEFT\"")});
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CQ_LEFT"), folder);
    remover.setProcessEnvironment(environment);
    remover.setStandardInputFile(QProcess::nullDevice());
    remover.setStandardOutputFile(QProcess::nullDevice());
    remover.setStandardErrorFile(QProcess::nullDevice());
    remover.startDetached();
}

} // namespace

ToolRunner::ToolRunner(QObject* parent) : QObject(parent) {
    qRegisterMetaType<cq::RunResult>();
    m_killTimer.setSingleShot(true);
    connect(&m_killTimer, &QTimer::timeout, this, [this] { signalGroup(SIGKILL); });
}

ToolRunner::~ToolRunner() {
    if (m_running && !m_handOver)
        signalGroup(SIGKILL);
    releaseProcess();
    removeTemporaryFolder();
}

bool ToolRunner::makeTemporaryFolder() {
    removeTemporaryFolder();
    if (m_workSpace.isEmpty())
        return true;
    QDir().mkpath(m_workSpace);
    const QString pattern = temporaryFolderPrefix() + QString::number(::getpid()) + "-XXXXXX";
    QByteArray name = QFile::encodeName(QDir(m_workSpace).absoluteFilePath(pattern));
    if (!::mkdtemp(name.data()))
        return false;
    m_temporaryFolder = QFile::decodeName(name);
    return true;
}

void ToolRunner::removeTemporaryFolder() {
    if (!m_temporaryFolder.isEmpty())
        RemoveFolderSoon(m_temporaryFolder);
    m_temporaryFolder.clear();
}

int ToolRunner::removeLeftTemporaryFolders(const QString& workSpace) {
    const QDir dir(workSpace);
    const QStringList folders = dir.entryList({temporaryFolderPrefix() + "*"},
                                              QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    int removed = 0;
    for (const QString& folder : folders) {
        bool numeric = false;
        const qint64 pid =
            folder.mid(temporaryFolderPrefix().size()).section(u'-', 0, 0).toLongLong(&numeric);
        // A studio that still runs (or a process that took its number since) keeps its folder.
        const bool alive =
            numeric && pid > 0 && (::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM);
        if (!alive && QDir(dir.filePath(folder)).removeRecursively())
            ++removed;
    }
    return removed;
}

bool ToolRunner::failToStart(const QString& why) {
    removeTemporaryFolder();
    m_result = {RunResult::Outcome::Failed, -1, why};
    const RunResult result = m_result;
    emit finished(result);
    return false;
}

bool ToolRunner::startScript(const QString& script, const QString& scriptFileSpec) {
    if (m_running)
        return false;
    if (!makeTemporaryFolder())
        return failToStart(
            QStringLiteral("No temporary folder could be made in \"%1\".").arg(m_workSpace));
    const QString file = scriptFileSpec.isEmpty()
                             ? QDir(m_temporaryFolder).filePath(QStringLiteral("run.sh"))
                             : QFileInfo(scriptFileSpec).absoluteFilePath();
    if (!SaveScriptToFile(script, file))
        return failToStart(QStringLiteral("The script \"%1\" could not be written.").arg(file));
    return startProcess(shell(), {QStringLiteral("-c"), kGuardedStart, file, m_temporaryFolder},
                        Kind::Script);
}

bool ToolRunner::startScript(const QString& script) {
    if (m_workSpace.isEmpty() && !m_running)
        return failToStart(QStringLiteral("The script has no work space to be written to."));
    return startScript(script, QString());
}

bool ToolRunner::startProgram(const QString& program, const QStringList& arguments) {
    if (m_running)
        return false;
    if (!makeTemporaryFolder())
        return failToStart(
            QStringLiteral("No temporary folder could be made in \"%1\".").arg(m_workSpace));
    return startProcess(program, arguments, Kind::Program);
}

bool ToolRunner::startHandOver(const QString& program, const QStringList& arguments) {
    if (m_running)
        return false;
    // What it hands over to lives on and must not find its temporary folder gone.
    removeTemporaryFolder();
    return startProcess(program, arguments, Kind::HandOver);
}

void ToolRunner::makeProcess(const QString& program, const QStringList& arguments, bool handOver) {
    m_process = new QProcess(this);
    m_process->setProgram(program);
    m_process->setArguments(arguments);
    m_process->setInputChannelMode(QProcess::ManagedInputChannel);
    if (!m_temporaryFolder.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), m_temporaryFolder);
        environment.insert(QStringLiteral("MAGICK_TEMPORARY_PATH"), m_temporaryFolder);
        m_process->setProcessEnvironment(environment);
    }
    const pid_t studio = ::getpid();
    m_process->setChildProcessModifier([studio, handOver] {
        // A group of its own, so that cancel reaches every tool the script started.
        ::setpgid(0, 0);
        // Killed with the studio; and if the studio died before that took hold, go now.
        if (!handOver)
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != studio)
            ::_exit(127);
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
    });
}

void ToolRunner::connectProcess() {
    connect(m_process, &QProcess::readyReadStandardOutput, this,
            [this] { deliver([this] { readChannel(QProcess::StandardOutput); }); });
    connect(m_process, &QProcess::readyReadStandardError, this,
            [this] { deliver([this] { readChannel(QProcess::StandardError); }); });
    connect(m_process, &QProcess::finished, this,
            [this](int exitCode, QProcess::ExitStatus status) {
                deliver([=, this] { onFinished(exitCode, status); });
            });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        deliver([=, this] { onErrorOccurred(error); });
    });
}

void ToolRunner::resetRun(bool script, bool handOver) {
    m_stdout.clear();
    m_stderrTail.clear();
    m_partial[0].clear();
    m_partial[1].clear();
    m_cancelRequested = false;
    m_result = {};
    m_pid = 0;
    m_script = script;
    m_handOver = handOver;
    m_running = true;
}

bool ToolRunner::startProcess(const QString& program, const QStringList& arguments, Kind kind) {
    const bool script = kind == Kind::Script;
    const bool handOver = kind == Kind::HandOver;
    releaseProcess();
    makeProcess(program, arguments, handOver);
    connectProcess();
    resetRun(script, handOver);
    QPointer<ToolRunner> self(this);
    m_process->start();
    if (!self || !m_running) // it failed at once; finished has been emitted
        return false;
    m_pid = m_process->processId();
    // The parent sets the group too, so a cancel right after the start cannot miss it.
    if (m_pid > 0)
        ::setpgid(static_cast<pid_t>(m_pid), static_cast<pid_t>(m_pid));
    // A script keeps its stdin open: the guard's pipe. A program gets end of input at once.
    if (!script)
        m_process->closeWriteChannel();
    return true;
}

void ToolRunner::releaseProcess() {
    if (!m_process)
        return;
    QProcess* process = m_process;
    m_process = nullptr;
    process->disconnect(this);
    process->setParent(nullptr);
    if (process->state() != QProcess::NotRunning) {
        // Its group has been killed; it goes once the event loop has reaped it, so nothing
        // waits here.
        Unreaped().insert(process);
        connect(process, &QProcess::stateChanged, process, [process](QProcess::ProcessState s) {
            if (s != QProcess::NotRunning)
                return;
            Unreaped().remove(process);
            process->deleteLater();
        });
    } else if (m_delivering > 0) {
        // Still inside one of its signals: deleting it now would pull it out from under Qt.
        process->deleteLater();
    } else {
        delete process;
    }
}

void ToolRunner::deliver(const std::function<void()>& handler) {
    QPointer<ToolRunner> self(this);
    ++m_delivering;
    handler();
    if (self)
        --m_delivering;
}

RunResult ToolRunner::waitForFinished() {
    if (m_running) {
        QEventLoop loop;
        connect(this, &ToolRunner::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return m_result;
}

RunResult ToolRunner::runScript(const QString& script, const QString& scriptFileSpec) {
    if (!startScript(script, scriptFileSpec))
        return m_result;
    return waitForFinished();
}

RunResult ToolRunner::runProgram(const QString& program, const QStringList& arguments) {
    if (!startProgram(program, arguments))
        return m_result;
    return waitForFinished();
}

void ToolRunner::cancel() {
    if (!m_running)
        return;
    m_cancelRequested = true;
    signalGroup(SIGTERM);
    m_killTimer.start(m_killGraceMs);
}

bool ToolRunner::isRunning() const {
    return m_running;
}

void ToolRunner::signalGroup(int signal) {
    if (m_pid > 0)
        ::kill(static_cast<pid_t>(-m_pid), signal);
}

bool ToolRunner::readChannel(QProcess::ProcessChannel channel) {
    if (!m_process)
        return true;
    const bool isErr = channel == QProcess::StandardError;
    m_process->setReadChannel(channel);
    const QByteArray chunk = m_process->readAll();
    if (isErr) {
        m_stderrTail += chunk;
        if (m_stderrTail.size() > kMaxKeptError)
            m_stderrTail = m_stderrTail.right(kMaxKeptError);
    } else if (m_stdout.size() < kMaxKeptOutput) {
        m_stdout += chunk;
    }
    QByteArray& partial = m_partial[isErr ? 1 : 0];
    partial += chunk;
    const QStringList lines = takeLines(partial);
    QPointer<ToolRunner> self(this);
    for (const QString& line : lines) {
        isErr ? emit errorLine(line) : emit outputLine(line);
        if (!self)
            return false;
    }
    return true;
}

bool ToolRunner::flushPartialLines() {
    QPointer<ToolRunner> self(this);
    for (int channel = 0; channel < 2; ++channel) {
        if (m_partial[channel].isEmpty())
            continue;
        const QString line = QString::fromUtf8(m_partial[channel]);
        m_partial[channel].clear();
        channel == 1 ? emit errorLine(line) : emit outputLine(line);
        if (!self)
            return false;
    }
    return true;
}

void ToolRunner::onFinished(int exitCode, QProcess::ExitStatus status) {
    // A line handler may delete the runner; then there is nobody left to tell.
    if (!readChannel(QProcess::StandardOutput) || !readChannel(QProcess::StandardError) ||
        !flushPartialLines())
        return;
    RunResult r;
    r.exitCode = status == QProcess::NormalExit ? exitCode : -1;
    r.errorText = QString::fromUtf8(m_stderrTail);
    if (m_cancelRequested)
        r.outcome = RunResult::Outcome::Cancelled;
    else if (status == QProcess::NormalExit && exitCode == 0)
        r.outcome = RunResult::Outcome::Finished;
    else
        r.outcome = RunResult::Outcome::Failed;
    finish(r);
}

void ToolRunner::onErrorOccurred(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart || !m_running || !m_process)
        return;
    finish({RunResult::Outcome::Failed, -1,
            QStringLiteral("%1 could not be started: %2")
                .arg(m_process->program(), m_process->errorString())});
}

void ToolRunner::finish(RunResult result) {
    if (!m_running)
        return;
    // Whatever a script or a cancelled program left running in its group goes with it; the
    // guard of a script is still in the group, so the group id cannot have been reused.
    if (m_script || result.cancelled())
        signalGroup(SIGKILL);
    if (m_process)
        m_process->closeWriteChannel();
    m_killTimer.stop();
    removeTemporaryFolder();
    m_running = false;
    m_pid = 0;
    m_result = result;
    // Handlers may delete the runner or start its next run: nothing here is touched after.
    emit finished(result);
}

qint64 ToolRunner::startDetached(const QString& program, const QStringList& arguments,
                                 const QString& workingFolder) {
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setWorkingDirectory(workingFolder);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    qint64 pid = 0;
    return process.startDetached(&pid) ? pid : 0;
}

} // namespace cq
