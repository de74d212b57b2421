#include "timeline/EventLogic.h"

#include "platform/TextHelpers.h"

namespace cq {

int RevertToLastView(const QStringList& mediaTypes) {
    if (mediaTypes.isEmpty())
        return 0;
    const QString& last = mediaTypes.last();
    QStringList wanted;
    if (last == u"Text")
        wanted = {QStringLiteral("Video"), QStringLiteral("Pictures")};
    else if (last == u"Pictures")
        wanted = {QStringLiteral("Video"), QStringLiteral("Text")};
    else
        wanted = {QStringLiteral("Pictures"), QStringLiteral("Text")};
    for (qsizetype i = mediaTypes.size() - 1; i >= 0; --i) {
        const QString& type = mediaTypes[i];
        if (!wanted.contains(type))
            continue;
        if (type == u"Video")
            return 0;
        return type == u"Pictures" ? 1 : 2;
    }
    return 0;
}

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
