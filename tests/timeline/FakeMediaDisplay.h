#pragma once

#include "timeline/MediaDisplay.h"
#include "timeline/VoicePlayer.h"

#include <QFile>
#include <QStringList>

namespace cq::test {

// Records what the timeline asked the screen to do, one line per request.
class FakeMediaDisplay : public MediaDisplay {
public:
    QStringList calls;
    QString video;
    bool playing = false;
    qint64 positionMs = 0;
    bool muted = false;
    bool canSavePictures = true;

    void showVideo(const QString& f, qint64 beginMs) override {
        calls << QStringLiteral("video %1 @%2").arg(f).arg(beginMs);
        video = f;
        playing = true;
        positionMs = std::max<qint64>(0, beginMs);
    }
    QString currentVideo() const override { return video; }
    bool isVideoPlaying() const override { return playing; }
    qint64 videoPositionMs() const override { return positionMs; }
    void bringVideoToFront() override { calls << QStringLiteral("video front"); }
    void stopVideo() override {
        playing = false;
        calls << QStringLiteral("stop video");
    }
    void setVideoMuted(bool m) override { muted = m; }
    void playAudio(MediaTabId tab, const QString& f) override {
        calls << QStringLiteral("audio %1 %2").arg(TabIndex(tab)).arg(f);
    }
    void showPicture(const QString& f) override { calls << QStringLiteral("picture ") + f; }
    void showText(const QString& t, bool speak) override {
        calls << QStringLiteral("text%1 ").arg(speak ? QStringLiteral("+speech") : QString()) + t;
    }
    void speakText(const QString& t) override { calls << QStringLiteral("speak ") + t; }
    bool saveTextPicture(const QString& f) override {
        calls << QStringLiteral("save ") + f;
        if (!canSavePictures)
            return false;
        QFile file(f);
        return file.open(QIODevice::WriteOnly) && file.write("BM") == 2;
    }
    void switchDisplay(DisplaySurface view) override {
        calls << QStringLiteral("switch %1").arg(SurfaceIndex(view));
    }
    void clearDisplay() override { calls << QStringLiteral("clear"); }
    void stopPlayers() override {
        playing = false;
        calls << QStringLiteral("stop players");
    }
};

// A voice whose position the test sets.
class FakeVoicePlayer : public VoicePlayer {
public:
    QString file;
    qint64 position = 0;
    bool ended = true;
    bool released = false;
    void play(const QString& f) override {
        file = f;
        position = 0;
        ended = false;
        released = false;
    }
    void stop() override { ended = true; }
    void release() override {
        ended = true;
        released = true;
    }
    qint64 positionMs() const override { return position; }
    bool hasEnded() const override { return ended; }
};

} // namespace cq::test
