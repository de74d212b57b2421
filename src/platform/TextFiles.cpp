#include "platform/TextFiles.h"

#include "platform/RegularFiles.h"

#include <QFile>
#include <QSaveFile>

namespace cq {

bool WriteWholeFile(const QByteArray& bytes, const QString& fileSpec) {
    if (fileSpec.trimmed().isEmpty())
        return false;
    QSaveFile file(fileSpec);
    // Unbuffered: a disk that takes only part of the bytes shows in write's count, whereas a
    // buffered file's commit can end well with the file cut short.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool SaveBytesToFile(const QByteArray& bytes, const QString& fileSpec) {
    return WriteWholeFile(bytes + "\r\n", fileSpec);
}

bool SaveTextToFile(const QString& text, const QString& fileSpec) {
    return SaveBytesToFile(text.toUtf8(), fileSpec);
}

QByteArray ReadFileToBytes(const QString& fileSpec, qint64 maxBytes) {
    if (!IsRegularFile(fileSpec))
        return {};
    QFile file(fileSpec);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return maxBytes < 0 ? file.readAll() : file.read(maxBytes);
}

QString NotARegularFileProblem(const QString& fileSpec) {
    const FileKind kind = KindOfFile(fileSpec);
    if (kind == FileKind::Missing || kind == FileKind::Regular)
        return {};
    return QStringLiteral("\"%1\" is not a regular file, so it was not read. Replace it with a "
                          "text file or remove it.")
        .arg(fileSpec);
}

QString ReadFileToString(const QString& fileSpec) {
    return QString::fromUtf8(ReadFileToBytes(fileSpec));
}

} // namespace cq
