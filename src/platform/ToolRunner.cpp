#include "platform/ToolRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
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

// The folders that could not be removed at once, because a tool of a killed group was still
// writing into them.
QStringList& LeftFolders() {
    static auto* folders = new QStringList;
    return *folders;
}

void RemoveLeftFolders() {
    QStringList& left = LeftFolders();
    left.erase(std::remove_if(left.begin(), left.end(),
                              [](const QString& f) { return QDir(f).removeRecursively(); }),
               left.end());
}

// When the studio ends, the tools its runners killed have had their moment to go; a folder that
// still resists is left to the next start, which removes what a studio that ended left behind.
void RemoveLeftFoldersAtExit() {
    constexpr int kAttempts = 10;
    for (int i = 0; i < kAttempts && !LeftFolders().isEmpty(); ++i) {
        if (i > 0)
            QThread::msleep(50);
        RemoveLeftFolders();
    }
}

// Removes the folder; when a tool of a killed group is still writing into it, it is removed a
// moment later, once the group has gone, or when the studio ends.
void RemoveFolderSoon(const QString& folder) {
    if (QDir(folder).removeRecursively())
        return;
    static const bool atExit = [] {
        qAddPostRoutine(RemoveLeftFoldersAtExit);
        return true;
    }();
    Q_UNUSED(atExit);
    LeftFolders() << folder;
    constexpr int kRetryMs = 1000;
    if (QCoreApplication::instance())
        QTimer::singleShot(kRetryMs, QCoreApplication::instance(), RemoveLeftFolders);
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

bool ToolRunner::start(const ToolCommand& command) {
    if (m_running)
        return false;
    const QString problem = command.inputProblem();
    if (!problem.isEmpty())
        return failToStart(problem);
    if (!command.keptOutputs.isEmpty() && m_workSpace.isEmpty())
        return failToStart(
            QStringLiteral("%1 was given no folder to write in.").arg(command.program));
    if (!makeTemporaryFolder())
        return failToStart(
            QStringLiteral("No temporary folder could be made in \"%1\".").arg(m_workSpace));
    return startProcess(command, false);
}

bool ToolRunner::startHandOver(const QString& program, const QStringList& arguments) {
    if (m_running)
        return false;
    // What it hands over to lives on and must not find its temporary folder gone.
    removeTemporaryFolder();
    return startProcess({program, arguments}, true);
}

void ToolRunner::makeProcess(const ToolCommand& command, bool handOver) {
    m_process = new QProcess(this);
    m_process->setProgram(command.program);
    m_process->setArguments(command.arguments);
    m_process->setInputChannelMode(QProcess::ManagedInputChannel);
    if (!command.standardInputFile.isEmpty())
        m_process->setStandardInputFile(command.standardInputFile);
    // It writes what it keeps by names of its own, in the folder that goes with the run.
    if (!command.keptOutputs.isEmpty())
        m_process->setWorkingDirectory(m_temporaryFolder);
    if (!m_temporaryFolder.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), m_temporaryFolder);
        environment.insert(QStringLiteral("MAGICK_TEMPORARY_PATH"), m_temporaryFolder);
        m_process->setProcessEnvironment(environment);
    }
    const pid_t studio = ::getpid();
    m_process->setChildProcessModifier([studio, handOver] {
        // A group of its own, so that cancel reaches every process the tool started.
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

void ToolRunner::resetRun(const ToolCommand& command, bool handOver) {
    m_stdout.clear();
    m_stderrTail.clear();
    m_partial[0].clear();
    m_partial[1].clear();
    m_cancelRequested = false;
    m_result = {};
    m_pid = 0;
    m_keptOutputs = command.keptOutputs;
    m_handOver = handOver;
    m_running = true;
}

bool ToolRunner::startProcess(const ToolCommand& command, bool handOver) {
    // The parent-death signal would reach the tool when a passing thread that started it ends.
    if (QCoreApplication::instance() &&
        QThread::currentThread() != QCoreApplication::instance()->thread())
        return failToStart(QStringLiteral("%1 was not started: tools start from the main thread.")
                               .arg(command.program));
    releaseProcess();
    makeProcess(command, handOver);
    connectProcess();
    resetRun(command, handOver);
    QPointer<ToolRunner> self(this);
    m_process->start();
    if (!self || !m_running) // it failed at once; finished has been emitted
        return false;
    m_pid = m_process->processId();
    // The parent sets the group too, so a cancel right after the start cannot miss it.
    if (m_pid > 0)
        ::setpgid(static_cast<pid_t>(m_pid), static_cast<pid_t>(m_pid));
    // Without an input file, the program gets end of input at once.
    if (command.standardInputFile.isEmpty())
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

RunResult ToolRunner::run(const ToolCommand& command) {
    if (!start(command))
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
    // Whatever the program left running in its group goes with it; what a hand-over started
    // belongs to the user.
    if (!m_handOver)
        signalGroup(SIGKILL);
    m_killTimer.stop();
    if (result.ok()) {
        const QString unmoved = moveKeptOutputs();
        if (!unmoved.isEmpty())
            result = {RunResult::Outcome::Failed, result.exitCode, unmoved};
    }
    removeTemporaryFolder();
    m_running = false;
    m_pid = 0;
    m_result = result;
    // Handlers may delete the runner or start its next run: nothing here is touched after.
    emit finished(result);
}

QString ToolRunner::moveKeptOutputs() const {
    for (const ToolCommand::KeptOutput& kept : m_keptOutputs) {
        const QString written = QDir(m_temporaryFolder).filePath(kept.written);
        // A rename replaces the old file in one step; across file systems it is copied.
        const bool moved = ::rename(QFile::encodeName(written).constData(),
                                    QFile::encodeName(kept.destination).constData()) == 0 ||
                           ((!QFile::exists(kept.destination) || QFile::remove(kept.destination)) &&
                            QFile::rename(written, kept.destination));
        if (!moved)
            return QStringLiteral("\"%1\" could not be moved to \"%2\".")
                .arg(written, kept.destination);
    }
    return {};
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
