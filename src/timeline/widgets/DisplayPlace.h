#pragma once

#include "timeline/MediaDisplay.h"

#include <QImage>
#include <QObject>

class QAudioOutput;
class QLabel;
class QMediaPlayer;
class QStackedWidget;
class QTextToSpeech;
class QVideoWidget;

namespace cq {

class EventLogger;

// The display place as the timeline uses it: a video player, a picture viewer and a text
// surface stacked in one place, the shown one in front. The main window may give the timeline
// its own richer display instead; this one needs only the stack to live in.
class DisplayPlace : public QObject, public MediaDisplay {
    Q_OBJECT
public:
    explicit DisplayPlace(QStackedWidget& place, QObject* parent = nullptr);

    void showVideo(const QString& fileSpec, qint64 beginMs) override;
    QString currentVideo() const override;
    bool isVideoPlaying() const override;
    qint64 videoPositionMs() const override;
    void bringVideoToFront() override;
    void stopVideo() override;
    void setVideoMuted(bool muted) override;
    void playAudio(int tab, const QString& fileSpec) override;
    void showPicture(const QString& fileSpec) override;
    void showText(const QString& text, bool speak) override;
    void speakText(const QString& text) override;
    bool saveTextPicture(const QString& fileSpec) override;
    void switchDisplay(int view) override;
    void clearDisplay() override;
    void stopPlayers() override;

    // The display switch logs what it brings back through this logger (while recording).
    void setLogger(EventLogger* logger) { m_logger = logger; }

    // The text as drawn on the surface: white on black, as large as fits.
    static QImage drawText(const QString& text, QSize size);

private:
    void showPictureFile(const QString& fileSpec);

    QStackedWidget& m_place;
    QVideoWidget* m_video;
    QLabel* m_picture;
    QLabel* m_text;
    QMediaPlayer* m_videoPlayer;
    QAudioOutput* m_videoOutput;
    QMediaPlayer* m_audioPlayer;
    QAudioOutput* m_audioOutput;
    QTextToSpeech* m_speech = nullptr;
    EventLogger* m_logger = nullptr;
    QImage m_textImage;
    QString m_lastPicture;
};

} // namespace cq
