#include "platform/LegacyText.h"

#include <QStringDecoder>

namespace cq {

namespace {
// 0x80 to 0x9F are where Windows-1252 differs from Latin-1. Qt's decoders for it depend on how
// Qt was built, so the table is kept here.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
} // namespace

QString DecodeWindows1252(const QByteArray& bytes) {
    QString text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        text.append(b >= 0x80 && b <= 0x9F ? QChar(kHighControls[b - 0x80]) : QChar(b));
    }
    return text;
}

QString DecodeUtf8OrWindows1252(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(bytes);
    if (!utf8.hasError())
        return text;
    return DecodeWindows1252(bytes);
}

} // namespace cq
