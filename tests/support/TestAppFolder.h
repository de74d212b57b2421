#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace cq::test {

// A fresh application folder in a temporary directory, filled from the build's own
// application folder (tool links, media), and a private home so no test touches the user's.
class TestAppFolder {
public:
    explicit TestAppFolder(bool seed = true);

    QString path() const { return m_dir.path(); }
    QString file(const QString& relative) const { return m_dir.path() + u'/' + relative; }
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_dir;
    QTemporaryDir m_home;
};

// Writes bytes to a file, creating its folder; for test inputs.
void WriteFile(const QString& path, const QByteArray& bytes);

// Runs the installed ffmpeg (quiet, overwriting) to make a test input; true when it succeeded.
bool MakeMedia(const QStringList& ffmpegArguments);

} // namespace cq::test
