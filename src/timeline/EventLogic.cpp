#include "timeline/EventLogic.h"

#include "platform/TextHelpers.h"

namespace cq {

QString TextForEvent(const QString& text) {
    QString t = RemoveLineBreaks(text);
    t.replace(u'\t', u' ');
    // Any other control character would break the row's line, or the file it is kept in.
    t.removeIf(IsControlCharacter);
    return t;
}

QString TextPictureFileName(const QString& text) {
    return CleanFileName(TextForEvent(text).left(50)) + QStringLiteral(".jpg");
}

} // namespace cq
