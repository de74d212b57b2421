#include "render/SoundProbe.h"

#include "platform/ToolRunner.h"
#include "render/MediaFileInfo.h"
#include "render/RenderPlan.h"

namespace cq {

SoundProbe::SoundProbe(QString ffmpeg, QStringList videos, QObject* parent)
    : QObject(parent), m_ffmpeg(std::move(ffmpeg)), m_videos(std::move(videos)),
      m_runner(new ToolRunner(this)) {
    m_runner->setKillGraceMilliseconds(500);
    connect(m_runner, &ToolRunner::finished, this, &SoundProbe::onProbed);
}

bool SoundProbe::isRunning() const {
    return m_runner->isRunning();
}

void SoundProbe::start() {
    probeNext();
}

void SoundProbe::cancel() {
    m_videos.clear();
    m_runner->disconnect(this);
    m_runner->cancel();
}

void SoundProbe::probeNext() {
    while (!m_videos.isEmpty() && !SourceProblem(m_videos.first()).isEmpty())
        m_videos.removeFirst();
    if (m_videos.isEmpty()) {
        emit finished(m_found);
        return;
    }
    m_current = m_videos.takeFirst();
    m_runner->startProgram(m_ffmpeg, {QStringLiteral("-nostdin"), QStringLiteral("-hide_banner"),
                                      QStringLiteral("-i"), m_current});
}

void SoundProbe::onProbed(const RunResult& result) {
    // ffmpeg given only an input describes it on stderr and complains of no output.
    m_found.insert(m_current, GetFileInfoVars(result.errorText, m_current));
    probeNext();
}

} // namespace cq
