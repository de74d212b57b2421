#include "render/WrittenFiles.h"

#include "platform/Folders.h"
#include "platform/RegularFiles.h"
#include "platform/TextFiles.h"

#include <QCryptographicHash>
#include <QFile>
#include <QLockFile>

namespace cq {

namespace {

constexpr qint64 kMaxDigestedBytes = 16LL * 1024 * 1024;
constexpr qint64 kMaxRecordBytes = 1024 * 1024;
constexpr qsizetype kDigestHexLength = 64;

} // namespace

QByteArray DigestOfFile(const QString& file) {
    if (!IsRegularFile(file))
        return {};
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly) || in.size() > kMaxDigestedBytes)
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    qint64 total = 0;
    while (!in.atEnd()) {
        const QByteArray chunk = in.read(1 << 16);
        total += chunk.size();
        if (chunk.isEmpty() || total > kMaxDigestedBytes)
            return {};
        hash.addData(chunk);
    }
    return hash.result().toHex();
}

WrittenFiles::WrittenFiles(QString recordFile) : m_record(std::move(recordFile)) {}

// Each line: the digest in hex, a tab, the landing path. A line of any other shape is no entry.
WrittenFiles::Entries WrittenFiles::read() const {
    Entries entries;
    if (m_record.isEmpty())
        return entries;
    for (const QByteArray& line : ReadFileToBytes(m_record, kMaxRecordBytes).split('\n')) {
        const qsizetype tab = line.indexOf('\t');
        const QByteArray digest = line.left(tab);
        const QString path = QString::fromUtf8(line.mid(tab + 1)).trimmed();
        if (tab != kDigestHexLength || !path.startsWith(u'/') ||
            QByteArray::fromHex(digest).toHex() != digest)
            continue;
        entries.append({path, digest});
    }
    return entries;
}

bool WrittenFiles::write(const Entries& entries) const {
    QByteArray text;
    for (qsizetype i = std::max<qsizetype>(0, entries.size() - kMaxEntries); i < entries.size();
         ++i)
        text += entries[i].second + '\t' + entries[i].first.toUtf8() + '\n';
    return WriteWholeFile(text, m_record);
}

bool WrittenFiles::wroteAsItIs(const QString& file) const {
    const QString landing = LandingPath(file);
    const Entries entries = read();
    for (auto it = entries.crbegin(); it != entries.crend(); ++it)
        if (it->first == landing)
            return !it->second.isEmpty() && it->second == DigestOfFile(file);
    return false;
}

bool WrittenFiles::update(const QStringList& files, bool keep) {
    if (m_record.isEmpty())
        return false;
    // Another render holds the record only for the moment of its own update; the window does not
    // wait for it. A file left unremembered is merely left alone by later renders.
    QLockFile lock(m_record + QStringLiteral(".lock"));
    if (!lock.tryLock(0))
        return false;
    Entries entries = read();
    for (const QString& file : files) {
        const QString landing = LandingPath(file);
        entries.removeIf([&landing](const auto& entry) { return entry.first == landing; });
        const QByteArray digest = keep ? DigestOfFile(file) : QByteArray();
        if (!digest.isEmpty())
            entries.append({landing, digest});
    }
    return write(entries);
}

bool WrittenFiles::remember(const QStringList& files) {
    return update(files, true);
}

void WrittenFiles::forget(const QStringList& files) {
    update(files, false);
}

} // namespace cq
