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

bool standsThere(const QString& file) {
    const QFileInfo info(file);
    return info.exists() || info.isSymLink();
}

QString leftAloneText(const QString& file) {
    return QStringLiteral("\"%1\" beside the result was not written by the studio, so it was left "
                          "as it is; players may show it with the result.")
        .arg(file);
}

} // namespace

CaptionFilesBeside::CaptionFilesBeside(QString output, QString partialOutput, const QString& record)
    : m_output(std::move(output)), m_partialOutput(std::move(partialOutput)), m_written(record) {}

CaptionFilesBeside::~CaptionFilesBeside() {
    removeStaged();
}

QStringList CaptionFilesBeside::othersFiles() const {
    QStringList others;
    for (const QString& target : SubtitleFilesBeside(m_output))
        if (standsThere(target) && !m_written.wroteAsItIs(target))
            others << target;
    return others;
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
    if (m_staged.isEmpty())
        return removeOlderPair();
    const QStringList targets = SubtitleFilesBeside(m_output);
    QStringList problems;
    QStringList placed;
    for (qsizetype i = 0; i < m_staged.size(); ++i) {
        const QString& target = targets[i];
        // Someone may have put a file of their own there since the render began.
        if (standsThere(target) && !m_written.wroteAsItIs(target)) {
            problems << leftAloneText(target);
            continue;
        }
        // rename(2) replaces an older file of the studio's in one step.
        if (std::rename(QFile::encodeName(m_staged[i]).constData(),
                        QFile::encodeName(target).constData()) != 0)
            problems << QStringLiteral("The captions could not be moved to \"%1\": %2")
                            .arg(target, QString::fromLocal8Bit(std::strerror(errno)));
        else
            placed << target;
    }
    removeStaged();
    if (!placed.isEmpty() && !m_written.remember(placed))
        problems << QStringLiteral("The studio could not note that it wrote \"%1\"; a later "
                                   "render will leave it alone.")
                        .arg(placed.join(QStringLiteral("\" and \"")));
    return problems.join(u'\n');
}

QString CaptionFilesBeside::removeOlderPair() {
    QStringList problems;
    QStringList removed;
    for (const QString& target : SubtitleFilesBeside(m_output)) {
        if (!standsThere(target))
            continue;
        if (!m_written.wroteAsItIs(target))
            problems << leftAloneText(target);
        else if (QFile::remove(target))
            removed << target;
    }
    if (!removed.isEmpty())
        m_written.forget(removed);
    return problems.join(u'\n');
}

void CaptionFilesBeside::removeStaged() {
    for (const QString& file : m_staged)
        QFile::remove(file);
    m_staged.clear();
}

} // namespace cq
