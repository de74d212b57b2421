#pragma once

#include "platform/Job.h"
#include "render/RenderInputs.h"
#include "render/RenderPlan.h"
#include "render/RenderReport.h"
#include "render/RenderWorkspace.h"
#include "render/VoiceLevel.h"

#include <QElapsedTimer>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace cq {

class MixStep;
class PieceScheduler;
class ResultCheck;
class SoundProbe;
class VoiceMeasure;
class VoiceSound;
class ToolPool;
struct MeasuredResult;

// Runs a render in steps that never block the window, each a unit of its own with its inputs and
// its result: which videos have sound (probe), what to make (plan), the pieces, the join and the
// mix with the voice, the check of the result's lengths against the voice, and the move of the
// result into place. The voice's level is measured, and its sound made in the result's codec,
// beside the pieces; the join waits for them, and then only copies streams unless a video's own
// sound must be mixed in. Only a result whose lengths match the voice replaces the previous one;
// cancel stops every tool within a second. The inputs never change once the job exists. The pieces
// are made through the shared tool pool, beside the other batches of tool runs.
class RenderJob : public Job {
    Q_OBJECT
public:
    enum class Step { Probe, Plan, Pieces, Mix, Verify, Publish };
    // Lengths of the result may differ from the voice by this much.
    static constexpr qint64 kToleranceMs = 200;

    RenderJob(RenderInputs inputs, ToolPool& pool, QObject* parent = nullptr);
    ~RenderJob() override;

    void start();
    void cancel() override;
    bool isRunning() const override { return m_running; }
    const RenderInputs& inputs() const { return m_in; }
    const RenderSpace& space() const { return m_space; }
    const QSet<QString>& videosWithSound() const { return m_videosWithSound; }
    const RenderPlan& plan() const { return m_plan; }
    const RenderReport& report() const { return m_report; }
    // Runs the job to its end while the event loop keeps running; for callers without a window.
    RenderReport runToEnd();

signals:
    void stepStarted(cq::RenderJob::Step step);
    void statusChanged(const QString& text);

private:
    void runStep(Step step);
    void stepDone();
    bool prepare();
    void probe();
    void makePlan();
    void prepareVoice();
    std::optional<VoiceTreatment> voiceTreatment() const;
    void encodeVoice();
    bool voiceBusy() const;
    void mixIfWaiting();
    void makePieces();
    void mix();
    void startMix();
    void verify();
    void judge(const MeasuredResult& measured);
    void publish();
    void stopSteps();
    void fail(const QString& message);
    void finish(const JobEnd& end);
    void log(const QString& line);
    QString writeLog();

    const RenderInputs m_in;
    ToolPool& m_pool;
    RenderWorkspace m_workspace;
    RenderSpace m_space;
    VoiceOptions m_voiceOptions; // the inputs' own, and whether this voice is mixed down
    qint64 m_voiceFileMs = 0;    // as the voice file's header tells, which its sound must last
    QSet<QString> m_videosWithSound;
    QHash<QString, qint64> m_videoLengths;
    RenderPlan m_plan;
    RenderReport m_report;
    Step m_step = Step::Probe;
    SoundProbe* m_probe = nullptr;
    PieceScheduler* m_pieces = nullptr;
    VoiceMeasure* m_voice = nullptr;
    VoiceSound* m_sound = nullptr;
    MixStep* m_mix = nullptr;
    ResultCheck* m_check = nullptr;
    bool m_running = false;
    bool m_cancelling = false;
    bool m_mixWaitsForVoice = false;
    QStringList m_log;
    QElapsedTimer m_clock;
};

} // namespace cq
