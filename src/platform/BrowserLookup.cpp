#include "platform/BrowserLookup.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

namespace cq {

namespace {
QString askTool(const QString& program, const QStringList& args) {
    if (QStandardPaths::findExecutable(program).isEmpty())
        return {};
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(3000)) {
        p.kill();
        p.waitForFinished(1000);
        return {};
    }
    if (p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return {};
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}
} // namespace

QString FindWebBrowserHandler() {
    const QString browserEnv =
        QProcessEnvironment::systemEnvironment().value(QStringLiteral("BROWSER"));
    if (!browserEnv.trimmed().isEmpty())
        return browserEnv.trimmed();
    QString handler = askTool(QStringLiteral("xdg-settings"),
                              {QStringLiteral("get"), QStringLiteral("default-web-browser")});
    if (handler.isEmpty())
        handler =
            askTool(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"),
                                                 QStringLiteral("x-scheme-handler/https")});
    return handler;
}

} // namespace cq
