#include "platform/WavFileWriter.h"

#include "platform/WavFormat.h"

#include <QtEndian>

namespace cq {

namespace {
constexpr quint16 kBitsPerSample = 16;
} // namespace

WavFileWriter::WavFileWriter(quint32 samplesPerSecond, quint16 channels)
    : m_rate(samplesPerSecond), m_channels(channels),
      m_headerEvery(qint64(samplesPerSecond) * channels * 2) {}

WavFileWriter::~WavFileWriter() {
    close();
}

bool WavFileWriter::fail(const QString& why) {
    m_error = why;
    return false;
}

bool WavFileWriter::open(const QString& fileSpec) {
    close();
    m_error.clear();
    m_dataBytes = 0;
    m_sinceHeader = 0;
    m_file.setFileName(fileSpec);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return fail(m_file.errorString());
    const QByteArray header = WavHeader(m_rate, m_channels, kBitsPerSample, 0);
    QString why;
    if (!m_syncer.follow(m_file.handle(), &why)) {
        m_file.close();
        return fail(why);
    }
    if (m_file.write(header) != header.size()) {
        const QString why = m_file.errorString();
        m_file.close();
        return fail(why);
    }
    return true;
}

bool WavFileWriter::append(const QByteArray& bytes) {
    if (!m_file.isOpen())
        return fail(QStringLiteral("the file is not open"));
    if (bytes.isEmpty())
        return true;
    const qint64 written = m_file.write(bytes);
    if (written > 0) {
        m_dataBytes += written;
        m_sinceHeader += written;
    }
    if (written != bytes.size()) {
        const QString why = m_file.errorString();
        updateHeader();
        return fail(why.isEmpty() ? QStringLiteral("the disk is full") : why);
    }
    if (m_sinceHeader >= m_headerEvery)
        return updateHeader();
    return true;
}

bool WavFileWriter::updateHeader() {
    if (!m_file.isOpen())
        return false;
    // Whole samples only: a torn last sample would shift every later one by a byte.
    const qint64 blockAlign = m_channels * (kBitsPerSample / 8);
    const qint64 usable = m_dataBytes - m_dataBytes % blockAlign;
    const QByteArray header =
        WavHeader(m_rate, m_channels, kBitsPerSample, static_cast<quint32>(usable));
    const qint64 end = m_file.pos();
    bool ok = m_file.seek(0) && m_file.write(header) == header.size();
    ok = m_file.seek(end) && ok;
    ok = m_file.flush() && ok;
    // To the disk itself, not only the system's cache: a power cut then loses no more either.
    m_syncer.requestSync();
    m_sinceHeader = 0;
    if (!ok)
        m_error = m_file.errorString();
    return ok;
}

bool WavFileWriter::close() {
    if (!m_file.isOpen())
        return true;
    const bool ok = updateHeader();
    // The sync updateHeader asked for is the last: the file's descriptor may close before it.
    m_syncer.release();
    m_file.close();
    return ok;
}

} // namespace cq
