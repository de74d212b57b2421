#include "library/playback/widgets/VideoPlayerWidget.h"

#include "library/playback/MediaPlayer.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace cq {

VideoPlayerWidget::VideoPlayerWidget(QWidget* parent) : QVideoWidget(parent) {
    setObjectName(QStringLiteral("WindowsMediaPlayer1"));
    setAccessibleName(QStringLiteral("Video player"));
    m_player = new MediaPlayer(this);
    m_player->setVideoOutput(this);
    connect(m_player, &MediaPlayer::fullScreenChanged, this, &QVideoWidget::setFullScreen);
    connect(this, &QVideoWidget::fullScreenChanged, m_player, &MediaPlayer::setFullScreen);
}

void VideoPlayerWidget::mousePressEvent(QMouseEvent* event) {
    m_player->notifyClick();
    if (m_player->fullScreen())
        m_player->setFullScreen(false);
    QVideoWidget::mousePressEvent(event);
}

void VideoPlayerWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (m_player->fullScreen())
        m_player->setFullScreen(false);
    QVideoWidget::mouseDoubleClickEvent(event);
}

void VideoPlayerWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_player->fullScreen()) {
        m_player->setFullScreen(false);
        return;
    }
    QVideoWidget::keyPressEvent(event);
}

} // namespace cq
