#include "app/widgets/KeepAwake.h"

#include "platform/ToolRunner.h"

#include <QStandardPaths>

namespace cq {

KeepAwake::KeepAwake(QObject* parent) : QObject(parent), m_runner(new ToolRunner(this)) {
    m_timer.setObjectName(QStringLiteral("tmrMoveMouseToPreventScreenSaver"));
    m_timer.setInterval(kResetIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &KeepAwake::tmrMoveMouseToPreventScreenSaver_Timer);
    m_timer.start();
}

void KeepAwake::tmrMoveMouseToPreventScreenSaver_Timer() {
    resetScreenSaver();
}

void KeepAwake::resetScreenSaver() {
    // A reset still under way from the last tick is as good as a new one.
    if (m_runner->isRunning())
        return;
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("xdg-screensaver"));
    if (tool.isEmpty())
        return;
    // Never loud: on a desktop without its helpers the tool complains on every tick, and the
    // runner keeps what it says to itself.
    m_runner->startProgram(tool, {QStringLiteral("reset")});
}

} // namespace cq
