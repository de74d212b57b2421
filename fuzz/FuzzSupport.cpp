#include "FuzzSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace cq::fuzz {

QByteArray InputBytes(const uint8_t* data, size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
}

void Broken(const char* what) {
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

namespace {

QString scratchFolder() {
    const QFileInfo shm(QStringLiteral("/dev/shm"));
    return shm.isDir() && shm.isWritable() ? shm.filePath() : QDir::tempPath();
}

} // namespace

ScratchFile::ScratchFile(const char* name)
    : m_path(QStringLiteral("%1/clipquill-fuzz-%2-%3")
                 .arg(scratchFolder())
                 .arg(qint64(::getpid()))
                 .arg(QLatin1String(name))) {}

ScratchFile::~ScratchFile() {
    QFile::remove(m_path);
}

bool ScratchFile::write(const QByteArray& bytes) const {
    QFile f(m_path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size() &&
           f.flush();
}

} // namespace cq::fuzz
