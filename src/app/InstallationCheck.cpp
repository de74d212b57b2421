#include "app/InstallationCheck.h"

#include "captions/SpeechDecoder.h"
#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"

#include <QAudioDevice>
#include <QEventLoop>
#include <QFileInfo>
#include <QMediaDevices>
#include <QStandardPaths>
#include <QTextToSpeech>
#include <QTimer>

namespace cq {

namespace {

constexpr int kToolAnswerMs = 10000;

// Runs a program through the runner, as the studio would, and stops it if it does not answer.
RunResult askProgram(ToolRunner& runner, const QString& program, const QStringList& args) {
    if (!runner.startProgram(program, args))
        return runner.lastResult();
    QTimer::singleShot(kToolAnswerMs, &runner, &ToolRunner::cancel);
    return runner.waitForFinished();
}

CheckFinding checkTool(const ToolLocation& tool, const QString& expected) {
    CheckFinding f{tool.name, false, QString()};
    if (!tool.found()) {
        f.detail = tool.missingMessage();
        return f;
    }
    ToolRunner runner;
    const RunResult r = askProgram(runner, tool.path, {QStringLiteral("-version")});
    const QString firstLine =
        QString::fromUtf8(runner.standardOutput()).section(u'\n', 0, 0).trimmed();
    f.usable = r.ok() && firstLine.contains(expected, Qt::CaseInsensitive);
    f.detail = f.usable ? firstLine + QStringLiteral(" at ") + tool.path
                        : QStringLiteral("%1 does not run: %2 %3")
                              .arg(tool.path, r.errorText.trimmed(), tool.missingMessage());
    return f;
}

CheckFinding checkAudioInput() {
    const QAudioDevice input = QMediaDevices::defaultAudioInput();
    if (input.isNull())
        return {QStringLiteral("audio input"), false,
                QStringLiteral("no microphone is available; recording will not capture sound")};
    return {QStringLiteral("audio input"), true, input.description()};
}

CheckFinding checkSpeech() {
    CheckFinding f{QStringLiteral("speech voice"), false, QString()};
    if (QTextToSpeech::availableEngines().isEmpty()) {
        f.detail = QStringLiteral("no speech engine; install the Debian package "
                                  "\"qt6-speech-flite-plugin\"");
        return f;
    }
    QTextToSpeech speech;
    if (speech.state() != QTextToSpeech::Ready) {
        QEventLoop loop;
        QObject::connect(&speech, &QTextToSpeech::stateChanged, &loop, &QEventLoop::quit);
        // An engine still loading its voices is given a moment; one that is not ready by then
        // would keep the texts silent too.
        constexpr int kSpeechReadyWaitMs = 3000;
        QTimer::singleShot(kSpeechReadyWaitMs, &loop, &QEventLoop::quit);
        loop.exec();
    }
    const QList<QVoice> voices = speech.availableVoices();
    f.usable = speech.state() != QTextToSpeech::Error && !voices.isEmpty();
    f.detail = f.usable ? speech.engine() + QStringLiteral(", voice ") + voices.first().name()
                        : QStringLiteral("the speech engine has no voice; texts are shown, "
                                         "not spoken");
    return f;
}

// The recogniser's model, which "Make Captions" and --captions need; its absence leaves the rest
// of the studio working.
CheckFinding checkSpeechModel() {
    const QString missing = SpeechDecoder::missingModelMessage();
    return {QStringLiteral("speech model"), missing.isEmpty(),
            missing.isEmpty() ? SpeechDecoder::modelFolder() : missing};
}

CheckFinding checkMail() {
    CheckFinding f{QStringLiteral("mail hand-over"), false, QString()};
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-email")).isEmpty()) {
        f.detail = QStringLiteral("xdg-email is missing; install the Debian package \"xdg-utils\"");
        return f;
    }
    const QString xdgMime = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    QString client;
    ToolRunner runner;
    if (!xdgMime.isEmpty() && askProgram(runner, xdgMime,
                                         {QStringLiteral("query"), QStringLiteral("default"),
                                          QStringLiteral("x-scheme-handler/mailto")})
                                  .ok())
        client = QString::fromUtf8(runner.standardOutput()).trimmed();
    f.usable = !client.isEmpty();
    f.detail = f.usable ? QStringLiteral("xdg-email, mail client ") + client
                        : QStringLiteral("xdg-email is there, but no mail client handles "
                                         "mailto: links");
    return f;
}

} // namespace

InstallationCheck InstallationCheck::run(const AppPaths& paths) {
    InstallationCheck c;
    c.findings << checkTool(LocateFfmpeg(paths.gstrFFMPEGFileSpec),
                            QStringLiteral("ffmpeg version"));
    c.findings << checkTool(LocateFfprobeBesideFfmpeg(paths.gstrFFMPEGFileSpec),
                            QStringLiteral("ffprobe version"));
    c.findings << checkTool(LocateConvert(paths.gstrImageMagickFileSpec),
                            QStringLiteral("ImageMagick"));
    c.findings << checkAudioInput() << checkSpeech() << checkSpeechModel() << checkMail();
    return c;
}

QStringList InstallationCheck::missingEssentials() const {
    const QStringList essential{QStringLiteral("ffmpeg"), QStringLiteral("ffprobe"),
                                QStringLiteral("convert")};
    QStringList missing;
    for (const CheckFinding& f : findings)
        if (essential.contains(f.what) && !f.usable)
            missing << f.what;
    return missing;
}

bool InstallationCheck::essentialsUsable() const {
    return missingEssentials().isEmpty();
}

QString InstallationCheck::report(const WindowlessStartup& startup,
                                  const InstallationCheck& check) {
    QString out;
    for (const auto& [name, value] : startup.paths.globals())
        out += name + u'=' + value + u'\n';
    const DirectorySettings& s = startup.settings;
    const QList<QPair<QString, QString>> settings{
        {QStringLiteral("gstrMyVideoDirectory"), s.gstrMyVideoDirectory},
        {QStringLiteral("gstrMyMusicDirectory"), s.gstrMyMusicDirectory},
        {QStringLiteral("gstrMyPicturesDirectory"), s.gstrMyPicturesDirectory},
        {QStringLiteral("gstrMyStdPicturesDirectory1"), s.gstrMyStdPicturesDirectory1},
        {QStringLiteral("gstrMyStdPicturesDirectory2"), s.gstrMyStdPicturesDirectory2},
        {QStringLiteral("gstrRenderToFileSpec"), s.gstrRenderToFileSpec},
        {QStringLiteral("gstrMyVideoProjectsDirectory"), s.gstrMyVideoProjectsDirectory}};
    for (const auto& [key, value] : settings)
        out += key + u'=' + value + u'\n';
    for (const QString& problem : startup.problems)
        out += QStringLiteral("problem: ") + problem + u'\n';
    for (const CheckFinding& f : check.findings)
        out += f.what +
               (f.usable ? QStringLiteral(": usable (") : QStringLiteral(": NOT usable (")) +
               f.detail + QStringLiteral(")\n");
    return out;
}

} // namespace cq
