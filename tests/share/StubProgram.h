#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace cq::test {

// A stand-in program placed first on PATH for the life of the object. Each run writes its
// arguments, NUL-separated, to log() and exits with the given code. The log appears whole, in
// one rename, so a test may read it as soon as it exists.
class StubProgram {
public:
    StubProgram(const QString& name, int exitCode = 0);
    ~StubProgram();
    StubProgram(const StubProgram&) = delete;
    StubProgram& operator=(const StubProgram&) = delete;

    QString folder() const { return m_dir.path(); }
    QString log() const { return m_dir.path() + QStringLiteral("/args.log"); }
    bool ran() const;
    QStringList arguments() const; // of the last run

private:
    QTemporaryDir m_dir;
    QByteArray m_oldPath;
};

// PATH without any folder that holds the named program, for the life of the object.
class HiddenProgram {
public:
    explicit HiddenProgram(const QString& name);
    ~HiddenProgram();

private:
    QByteArray m_oldPath;
};

} // namespace cq::test
