#include "platform/ToolRunner.h"

#include "platform/ScriptFile.h"

#include <QEventLoop>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace cq {

namespace {
constexpr qsizetype kMaxKeptError = 64 * 1024;
constexpr qsizetype kMaxKeptOutput = 4 * 1024 * 1024;
} // namespace

ToolRunner::ToolRunner(QObject* parent) : QObject(parent) {
    qRegisterMetaType<cq::RunResult>();
    m_killTimer.setSingleShot(true);
    connect(&m_killTimer, &QTimer::timeout, this, [this] { signalGroup(SIGKILL); });
}

ToolRunner::~ToolRunner() {
    if (m_running && m_process) {
        signalGroup(SIGKILL);
        m_process->waitForFinished(2000);
    }
}

bool ToolRunner::startScript(const QString& script, const QString& scriptFileSpec) {
    if (m_running)
        return false;
    if (!SaveScriptToFile(script, scriptFileSpec)) {
        m_result = {RunResult::Outcome::Failed, -1,
                    QStringLiteral("The script \"%1\" could not be written.").arg(scriptFileSpec)};
        emit finished(m_result);
        return false;
    }
    return startProcess(QStringLiteral("/bin/sh"), {scriptFileSpec});
}

bool ToolRunner::startProgram(const QString& program, const QStringList& arguments) {
    if (m_running)
        return false;
    return startProcess(program, arguments);
}

bool ToolRunner::startProcess(const QString& program, const QStringList& arguments) {
    delete m_process;
    m_process = new QProcess(this);
    m_process->setProgram(program);
    m_process->setArguments(arguments);
    m_process->setInputChannelMode(QProcess::ManagedInputChannel);
    // A group of its own, so that cancel reaches every tool the script started.
    m_process->setChildProcessModifier([] { ::setpgid(0, 0); });
    connect(m_process, &QProcess::readyReadStandardOutput, this,
            [this] { onReadyRead(QProcess::StandardOutput); });
    connect(m_process, &QProcess::readyReadStandardError, this,
            [this] { onReadyRead(QProcess::StandardError); });
    connect(m_process, &QProcess::finished, this, &ToolRunner::onFinished);
    connect(m_process, &QProcess::errorOccurred, this, &ToolRunner::onErrorOccurred);
    m_stdout.clear();
    m_stderrTail.clear();
    m_partial[0].clear();
    m_partial[1].clear();
    m_cancelRequested = false;
    m_result = {};
    m_running = true;
    m_process->start();
    m_process->closeWriteChannel();
    if (!m_process->waitForStarted(5000)) {
        if (m_running) // errorOccurred did not finish it yet
            finish({RunResult::Outcome::Failed, -1,
                    QStringLiteral("%1 could not be started.").arg(program)});
        return false;
    }
    m_pid = m_process->processId();
    return true;
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

void ToolRunner::onReadyRead(QProcess::ProcessChannel channel) {
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
    qsizetype start = 0;
    for (qsizetype i = 0; i < partial.size(); ++i) {
        if (partial[i] != '\n' && partial[i] != '\r')
            continue;
        if (i > start) {
            const QString line = QString::fromUtf8(partial.mid(start, i - start));
            isErr ? emit errorLine(line) : emit outputLine(line);
        }
        start = i + 1;
    }
    partial.remove(0, start);
}

void ToolRunner::onFinished(int exitCode, QProcess::ExitStatus status) {
    onReadyRead(QProcess::StandardOutput);
    onReadyRead(QProcess::StandardError);
    for (int channel = 0; channel < 2; ++channel) {
        if (m_partial[channel].isEmpty())
            continue;
        const QString line = QString::fromUtf8(m_partial[channel]);
        m_partial[channel].clear();
        channel == 1 ? emit errorLine(line) : emit outputLine(line);
    }
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
    if (error != QProcess::FailedToStart || !m_running)
        return;
    finish({RunResult::Outcome::Failed, -1,
            QStringLiteral("%1 could not be started: %2")
                .arg(m_process->program(), m_process->errorString())});
}

void ToolRunner::finish(RunResult result) {
    if (!m_running)
        return;
    // Whatever a cancelled script left running in its group goes with it.
    if (result.cancelled())
        signalGroup(SIGKILL);
    m_killTimer.stop();
    m_running = false;
    m_pid = 0;
    m_result = result;
    emit finished(m_result);
}

} // namespace cq
