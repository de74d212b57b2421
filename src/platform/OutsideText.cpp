#include "platform/OutsideText.h"

#include "platform/LegacyText.h"

#include <QStringDecoder>

#include <optional>

namespace cq {

namespace {

// UTF-16 without a byte-order mark: text of the Latin range leaves every other byte zero. The
// zeros stand at odd places in little-endian text and at even places in big-endian text.
std::optional<QStringDecoder::Encoding> unmarkedUtf16(const QByteArray& bytes) {
    const qsizetype n = qMin<qsizetype>(bytes.size(), 400);
    qsizetype evenZeros = 0;
    qsizetype oddZeros = 0;
    for (qsizetype i = 0; i < n; ++i)
        if (bytes[i] == '\0')
            ++(i % 2 ? oddZeros : evenZeros);
    if (n < 2 || (evenZeros + oddZeros) * 3 < n)
        return std::nullopt;
    return oddZeros >= evenZeros ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE;
}

std::optional<QStringDecoder::Encoding> utf16Encoding(const QByteArray& bytes) {
    if (bytes.startsWith("\xFF\xFE"))
        return QStringDecoder::Utf16LE;
    if (bytes.startsWith("\xFE\xFF"))
        return QStringDecoder::Utf16BE;
    return unmarkedUtf16(bytes);
}

} // namespace

OutsideText DecodeOutsideText(const QByteArray& bytes) {
    OutsideText decoded;
    if (const auto utf16 = utf16Encoding(bytes)) {
        // The decoder drops a leading byte-order mark.
        QStringDecoder decoder(*utf16, QStringDecoder::Flag::Stateless);
        decoded.text = decoder.decode(bytes);
    } else {
        const QByteArray body = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        decoded.text = utf8.decode(body);
        if (utf8.hasError())
            decoded.text = DecodeWindows1252(body);
    }
    if (decoded.text.contains(QChar(u'\0')))
        decoded.problem = QStringLiteral("holds zero bytes, so it is not text");
    return decoded;
}

} // namespace cq
