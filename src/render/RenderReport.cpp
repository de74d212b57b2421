#include "render/RenderReport.h"

namespace cq {

QString RenderLengthText(qint64 ms) {
    return ms < 0 ? QStringLiteral("unknown") : QString::number(double(ms) / 1000.0, 'f', 3) + u's';
}

QString LengthMismatchMessage(const RenderReport& r, const QString& output) {
    return QStringLiteral("The rendered video is %1 long (picture %2, sound %3) but the voice is "
                          "%4, so it was not kept; \"%5\" was left as it was.")
        .arg(RenderLengthText(r.outputMs), RenderLengthText(r.videoMs), RenderLengthText(r.audioMs),
             RenderLengthText(r.voiceMs), output);
}

QString FailedItemsMessage(const QStringList& items, const QStringList& reasons) {
    if (items.isEmpty())
        return {};
    QString text = QStringLiteral("These files could not be rendered and show black for their "
                                  "time:");
    for (qsizetype i = 0; i < items.size(); ++i)
        text += QStringLiteral("\n\"%1\": %2")
                    .arg(items[i], i < reasons.size() ? reasons[i] : QString());
    return text;
}

} // namespace cq
