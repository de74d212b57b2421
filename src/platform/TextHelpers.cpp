#include "platform/TextHelpers.h"

#include <QFileInfo>

namespace cq {

namespace {
bool isAsciiLetter(QChar c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}
bool isAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}
template <typename Keep> QString keepOnly(const QString& text, Keep keep) {
    QString out;
    out.reserve(text.size());
    for (QChar c : text)
        if (keep(c))
            out.append(c);
    return out;
}
} // namespace

QStringList SplitToArrayNonEmpty(const QString& text, const QString& separator) {
    return text.split(separator, Qt::SkipEmptyParts);
}

QString CleanFileName(const QString& text) {
    static const QString extra = QStringLiteral(" _-+()");
    return keepOnly(
        text, [](QChar c) { return isAsciiLetter(c) || isAsciiDigit(c) || extra.contains(c); });
}

QString GetDigitsOnly(const QString& text) {
    return keepOnly(text, isAsciiDigit);
}

QByteArray InvertCharacters(const QByteArray& bytes) {
    QByteArray out(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        out[i] = static_cast<char>(255 - static_cast<unsigned char>(bytes[i]));
    return out;
}

QString RemoveLineBreaks(QString text) {
    while (text.contains(QStringLiteral("\r\n")))
        text.remove(QStringLiteral("\r\n"));
    return text;
}

} // namespace cq
