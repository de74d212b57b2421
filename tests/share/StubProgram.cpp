#include "StubProgram.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace cq::test {

StubProgram::StubProgram(const QString& name, int exitCode) : m_oldPath(qgetenv("PATH")) {
    const QString script = m_dir.path() + u'/' + name;
    QFile file(script);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    // The log is written under another name and renamed: whoever sees it sees it whole.
    file.write(QStringLiteral("#!/bin/sh\n"
                              ": > '%1.part'\n"
                              "for a in \"$@\"; do printf '%s\\0' \"$a\" >> '%1.part'; done\n"
                              "mv -f '%1.part' '%1'\n"
                              "exit %2\n")
                   .arg(log())
                   .arg(exitCode)
                   .toUtf8());
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", m_dir.path().toUtf8() + ':' + m_oldPath);
}

StubProgram::~StubProgram() {
    qputenv("PATH", m_oldPath);
}

bool StubProgram::ran() const {
    return QFileInfo::exists(log());
}

QStringList StubProgram::arguments() const {
    QFile file(log());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> pieces = file.readAll().split('\0');
    pieces.removeLast(); // after the final NUL
    QStringList args;
    for (const QByteArray& piece : pieces)
        args << QString::fromUtf8(piece);
    return args;
}

HiddenProgram::HiddenProgram(const QString& name) : m_oldPath(qgetenv("PATH")) {
    QStringList kept;
    for (const QString& folder : QString::fromUtf8(m_oldPath).split(u':'))
        if (!QFileInfo::exists(folder + u'/' + name))
            kept << folder;
    qputenv("PATH", kept.join(u':').toUtf8());
}

HiddenProgram::~HiddenProgram() {
    qputenv("PATH", m_oldPath);
}

} // namespace cq::test
