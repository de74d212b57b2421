#include "app/widgets/KeepAwake.h"

#include <QProcess>
#include <QStandardPaths>

namespace cq {

KeepAwake::KeepAwake(QObject* parent) : QObject(parent) {
    m_timer.setObjectName(QStringLiteral("tmrMoveMouseToPreventScreenSaver"));
    m_timer.setInterval(50000);
    connect(&m_timer, &QTimer::timeout, this, &KeepAwake::tmrMoveMouseToPreventScreenSaver_Timer);
    m_timer.start();
}

void KeepAwake::tmrMoveMouseToPreventScreenSaver_Timer() {
    ++m_ticks;
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("xdg-screensaver"));
    if (tool.isEmpty())
        return;
    // Never loud: on a desktop without its helpers the tool complains on every tick.
    QProcess reset;
    reset.setProgram(tool);
    reset.setArguments({QStringLiteral("reset")});
    reset.setStandardOutputFile(QProcess::nullDevice());
    reset.setStandardErrorFile(QProcess::nullDevice());
    reset.startDetached();
}

} // namespace cq
