#include "app/CommandLineRender.h"

#include "app/StudioCaptions.h"
#include "app/StudioRender.h"
#include "captions/CaptionsFile.h"
#include "captions/RecognizeCaptions.h"
#include "captions/SubtitleFiles.h"
#include "platform/Console.h"
#include "platform/Folders.h"
#include "platform/ToolPool.h"
#include "platform/WavFormat.h"
#include "render/OutputGuard.h"
#include "render/RenderJob.h"
#include "studio/AppPaths.h"
#include "studio/StudioSettings.h"
#include "studio/TimelineFile.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace cq {

namespace {

// The words heard in the voice with the cues of the texts. A voice that cannot be recognised
// leaves the texts' cues, and err says why.
CaptionCues voiceAndTextCues(const RenderInputs& inputs, FILE* err) {
    PrintTo(err, QStringLiteral("Captions: recognising the voice\n"));
    // A work folder of its own: a studio may be recording in the application's.
    QTemporaryDir work;
    const RecognizedCaptions heard =
        work.isValid() ? RecognizeCaptions(inputs.voiceFile, inputs.ffmpeg, work.path())
                       : RecognizedCaptions{{}, QStringLiteral("no temporary folder")};
    if (!heard.ok())
        PrintTo(err, QStringLiteral("Captions: the voice could not be recognised (%1); only the "
                                    "texts are captioned.\n")
                         .arg(heard.problem));
    return VoiceAndTextCues(heard.cues, inputs.rows, inputs.recordingMs);
}

// The project's own captions are the Captions.srt beside its timeline; what of it cannot be read
// is said and the rest is used. A project without that file is captioned from its voice.
void addProjectCaptions(RenderInputs& inputs, const StudioSettings& studio, const QString& timeline,
                        FILE* err) {
    if (!studio.captions && !studio.burnCaptions)
        return;
    const QString file = CaptionsFileIn(QFileInfo(timeline).absolutePath());
    if (!QFileInfo::exists(file)) {
        AddCaptions(inputs, studio, voiceAndTextCues(inputs, err));
        return;
    }
    const ReadCues own = ReadCaptionsFile(file);
    if (!own.problem.isEmpty())
        PrintTo(err, QStringLiteral("Captions: %1\n").arg(own.problem));
    AddCaptions(inputs, studio, own.cues);
}

// A render writes its subtitle files beside its result, or takes an older pair away there: never
// where the studio keeps the take's captions or the project's own, whichever links lead there.
QString captionsClashProblem(const QString& output, const AppPaths& paths,
                             const QString& timeline) {
    const QString beside = LandingPath(SubtitleFilesBeside(output).first()); // the SRT
    for (const QString& folder : {paths.gstrTempFilesDirectory, QFileInfo(timeline).path()}) {
        const QString kept = CaptionsFileIn(folder);
        if (beside == LandingPath(kept) || beside == ReadPath(kept))
            return QStringLiteral("\"%1\" would put its captions over \"%2\", which the studio "
                                  "keeps; choose another name for the result.")
                .arg(output, QFileInfo(kept).absoluteFilePath());
    }
    return {};
}

} // namespace

RenderRequest CommandLineRenderRequest(const AppPaths& paths, StudioSettings studio,
                                       const CommandLineRenderOptions& options, FILE* err) {
    const TimelineReadResult timeline = ReadTimelineFile(options.timeline);
    if (!timeline.ok())
        return {{},
                QStringLiteral("Cannot read the timeline \"%1\": %2")
                    .arg(options.timeline, timeline.error)};
    const QString voice = options.voice.isEmpty()
                              ? QFileInfo(options.timeline)
                                    .absoluteDir()
                                    .filePath(QStringLiteral("RecordedAudio.wav"))
                              : QFileInfo(options.voice).absoluteFilePath();
    const WavInfo wav = ReadWavInfo(voice);
    if (!wav.ok() || wav.durationMs <= 0)
        return {{},
                wav.ok() ? QStringLiteral("The voice \"%1\" holds no sound.").arg(voice)
                         : wav.error};
    if (!options.size.isEmpty())
        studio.gstrVideoRes = options.size;
    const QString output =
        options.output.isEmpty() ? QString() : QFileInfo(options.output).absoluteFilePath();
    if (!output.isEmpty()) {
        const QString clash = captionsClashProblem(output, paths, options.timeline);
        if (!clash.isEmpty())
            return {{}, clash};
    }
    RenderRequest request =
        StudioRenderRequest(paths, studio, timeline.rows, voice, wav.durationMs, output);
    if (!request.ok())
        return request;
    request.inputs.sourceFiles = {QFileInfo(options.timeline).absoluteFilePath(),
                                  CaptionsFileIn(QFileInfo(options.timeline).absolutePath())};
    // Refused before the voice is recognised for captions, which may take a while.
    request.inputs.writeCaptions = studio.captions;
    request.problem = RenderOutputProblem(request.inputs);
    if (request.ok())
        addProjectCaptions(request.inputs, studio, options.timeline, err);
    return request;
}

int RunCommandLineRender(const AppPaths& paths, const StudioSettings& studio,
                         const CommandLineRenderOptions& options, FILE* out, FILE* err) {
    const RenderRequest request = CommandLineRenderRequest(paths, studio, options, err);
    if (!request.ok()) {
        PrintTo(err, request.problem + u'\n');
        return 2;
    }

    ToolPool pool;
    RenderJob job(request.inputs, pool);
    QObject::connect(&job, &RenderJob::statusChanged,
                     [err](const QString& text) { PrintTo(err, text + u'\n'); });
    QObject::connect(&job, &RenderJob::progressed, [err](int percent) {
        PrintTo(err, QStringLiteral("Rendering: %1%\n").arg(percent));
    });
    const RenderReport report = job.runToEnd();
    if (!report.message.isEmpty())
        PrintTo(err, report.message + u'\n');
    if (!report.logFile.isEmpty())
        PrintTo(err, QStringLiteral("Render log: %1\n").arg(report.logFile));
    if (!report.isDone())
        return 1;
    PrintTo(out, report.output + u'\n');
    return report.ok() && QFileInfo::exists(report.output) ? 0 : 1;
}

} // namespace cq
