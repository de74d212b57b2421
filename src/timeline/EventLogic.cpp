#include "timeline/EventLogic.h"

#include "platform/TextHelpers.h"

namespace cq {

QString TextForEventRow(const QString& text) {
    QString t = RemoveLineBreaks(text);
    t.replace(u'\t', u' ');
    // Any other control character would break the row's line, or the file it is kept in.
    t.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
    return t;
}

QString TextPictureFileName(const QString& text) {
    return CleanFileName(TextForEventRow(text).left(50)) + QStringLiteral(".jpg");
}

} // namespace cq
