#include "render/FfmpegInputs.h"

namespace cq {

int FfmpegInputs::add(const QString& file, const QStringList& options) {
    m_arguments << options << QStringLiteral("-i") << file;
    return m_count++;
}

QString FfmpegInputs::stream(int input, char kind) {
    return QStringLiteral("%1:%2").arg(input).arg(QLatin1Char(kind));
}

ToolCommand FfmpegInputs::command(const QString& ffmpeg, const QStringList& logLevel) const {
    return {ffmpeg, QStringList{QStringLiteral("-nostdin"), QStringLiteral("-hide_banner")} +
                        logLevel + m_arguments};
}

} // namespace cq
