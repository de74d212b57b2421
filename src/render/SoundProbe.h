#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

namespace cq {

class ToolRunner;
struct RunResult;

// The first step of a render that keeps the videos' own sound: asks ffmpeg, one video after the
// other, which of them have a sound track. A file that is no regular file is not asked about.
// Ends with finished, or with nothing after cancel().
class SoundProbe : public QObject {
    Q_OBJECT
public:
    SoundProbe(QString ffmpeg, QStringList videos, QObject* parent = nullptr);

    void start();
    void cancel();
    bool isRunning() const;

signals:
    void finished(const QSet<QString>& videosWithSound);

private:
    void probeNext();
    void onProbed(const RunResult& result);

    QString m_ffmpeg;
    QStringList m_videos;
    QString m_current;
    QSet<QString> m_withSound;
    ToolRunner* m_runner;
};

} // namespace cq
