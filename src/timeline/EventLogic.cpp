#include "timeline/EventLogic.h"

#include "platform/TextHelpers.h"

namespace cq {

QString TextForEventRow(const QString& text) {
    QString t = RemoveLineBreaks(text);
    t.remove(u'\r');
    t.remove(u'\n');
    t.replace(u'\t', u' ');
    return t;
}

QString TextPictureFileName(const QString& text) {
    return CleanFileName(TextForEventRow(text).left(50)) + QStringLiteral(".jpg");
}

} // namespace cq
