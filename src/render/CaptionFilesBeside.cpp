#include "render/CaptionFilesBeside.h"

#include "captions/SubtitleFiles.h"
#include "platform/TextFiles.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace cq {

CaptionFilesBeside::CaptionFilesBeside(QString output, QString partialOutput)
    : m_output(std::move(output)), m_partialOutput(std::move(partialOutput)) {}

CaptionFilesBeside::~CaptionFilesBeside() {
    removeStaged();
}

QString CaptionFilesBeside::stage(const CaptionCues& cues) {
    removeStaged();
    const QByteArray texts[] = {WriteSrt(cues), WriteVtt(cues)};
    const QStringList partials = SubtitleFilesBeside(m_partialOutput);
    for (qsizetype i = 0; i < partials.size(); ++i) {
        if (!WriteWholeFile(texts[i], partials[i])) {
            removeStaged();
            return QStringLiteral("The captions \"%1\" could not be written.")
                .arg(SubtitleFilesBeside(m_output).at(i));
        }
        m_staged << partials[i];
    }
    return {};
}

QString CaptionFilesBeside::publish() {
    const QStringList targets = SubtitleFilesBeside(m_output);
    if (m_staged.isEmpty()) {
        for (const QString& target : targets)
            QFile::remove(target);
        return {};
    }
    QString problem;
    for (qsizetype i = 0; i < m_staged.size(); ++i) {
        const QString& target = targets[i];
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
