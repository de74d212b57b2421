#pragma once

#include "render/MediaFileInfo.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

namespace cq {

class ToolRunner;
struct RunResult;

// The first step of a render with videos: asks ffmpeg, one video after the other, what each
// holds: whether it has a sound track (for a render that keeps the videos' own sound), and how
// long it lasts (a row may start past its end). A file that is no regular file is not asked
// about. Ends with finished, or with nothing after cancel().
class SoundProbe : public QObject {
    Q_OBJECT
public:
    SoundProbe(QString ffmpeg, QStringList videos, QObject* parent = nullptr);

    void start();
    void cancel();
    bool isRunning() const;

signals:
    void finished(const QHash<QString, cq::MediaFileInfo>& videos);

private:
    void probeNext();
    void onProbed(const RunResult& result);

    QString m_ffmpeg;
    QStringList m_videos;
    QString m_current;
    QHash<QString, MediaFileInfo> m_found;
    ToolRunner* m_runner;
};

} // namespace cq
