#include "render/CaptionFilesBeside.h"

#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace cq {

namespace {

const QStringList kSuffixes{QStringLiteral("srt"), QStringLiteral("vtt")};

} // namespace

CaptionFilesBeside::CaptionFilesBeside(QString output, QString partialOutput)
    : m_output(std::move(output)), m_partialOutput(std::move(partialOutput)) {}

CaptionFilesBeside::~CaptionFilesBeside() {
    removeStaged();
}

QString CaptionFilesBeside::stage(const CaptionCues& cues) {
    removeStaged();
    const QByteArray texts[] = {WriteSrt(cues), WriteVtt(cues)};
    for (qsizetype i = 0; i < kSuffixes.size(); ++i) {
        const QString partial = SubtitleFileBeside(m_partialOutput, kSuffixes[i]);
        if (!WriteWholeFile(texts[i], partial)) {
            removeStaged();
            return QStringLiteral("The captions \"%1\" could not be written.")
                .arg(SubtitleFileBeside(m_output, kSuffixes[i]));
        }
        m_staged << partial;
    }
    return {};
}

QString CaptionFilesBeside::publish() {
    if (m_staged.isEmpty()) {
        for (const QString& suffix : kSuffixes)
            QFile::remove(SubtitleFileBeside(m_output, suffix));
        return {};
    }
    QString problem;
    for (qsizetype i = 0; i < m_staged.size(); ++i) {
        const QString target = SubtitleFileBeside(m_output, kSuffixes[i]);
        // rename(2) replaces an older file in one step.
        if (std::rename(QFile::encodeName(m_staged[i]).constData(),
                        QFile::encodeName(target).constData()) != 0 &&
            problem.isEmpty())
            problem = QStringLiteral("The captions could not be moved to \"%1\": %2")
                          .arg(target, QString::fromLocal8Bit(std::strerror(errno)));
    }
    removeStaged();
    return problem;
}

void CaptionFilesBeside::removeStaged() {
    for (const QString& file : m_staged)
        QFile::remove(file);
    m_staged.clear();
}

} // namespace cq
