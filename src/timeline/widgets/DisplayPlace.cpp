#include "timeline/widgets/DisplayPlace.h"

#include "timeline/EventLogger.h"

#include <QAudioOutput>
#include <QFont>
#include <QLabel>
#include <QMediaPlayer>
#include <QPainter>
#include <QStackedWidget>
#include <QTextToSpeech>
#include <QUrl>
#include <QVideoWidget>

namespace cq {

DisplayPlace::DisplayPlace(QStackedWidget& place, QObject* parent)
    : QObject(parent), m_place(place), m_video(new QVideoWidget(&place)),
      m_picture(new QLabel(&place)), m_text(new QLabel(&place)),
      m_videoPlayer(new QMediaPlayer(this)), m_videoOutput(new QAudioOutput(this)),
      m_audioPlayer(new QMediaPlayer(this)), m_audioOutput(new QAudioOutput(this)) {
    m_video->setObjectName(QStringLiteral("WindowsMediaPlayer1"));
    m_picture->setObjectName(QStringLiteral("timelinePicture"));
    m_text->setObjectName(QStringLiteral("picDisplay"));
    for (QLabel* label : {m_picture, m_text}) {
        label->setAlignment(Qt::AlignCenter);
        label->setMinimumSize(1, 1);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    }
    m_picture->setAccessibleName(QStringLiteral("Picture"));
    m_text->setAccessibleName(QStringLiteral("Text display"));
    m_place.addWidget(m_video);
    m_place.addWidget(m_picture);
    m_place.addWidget(m_text);
    m_videoPlayer->setAudioOutput(m_videoOutput);
    m_videoPlayer->setVideoOutput(m_video);
    m_audioPlayer->setAudioOutput(m_audioOutput);
}

void DisplayPlace::showVideo(const QString& fileSpec, qint64 beginMs) {
    m_videoPlayer->setSource(QUrl::fromLocalFile(fileSpec));
    if (beginMs > 0)
        m_videoPlayer->setPosition(beginMs);
    m_videoPlayer->play();
    m_place.setCurrentWidget(m_video);
}

QString DisplayPlace::currentVideo() const {
    return m_videoPlayer->source().toLocalFile();
}

bool DisplayPlace::isVideoPlaying() const {
    return m_videoPlayer->playbackState() == QMediaPlayer::PlayingState;
}

qint64 DisplayPlace::videoPositionMs() const {
    return m_videoPlayer->position();
}

void DisplayPlace::bringVideoToFront() {
    m_place.setCurrentWidget(m_video);
}

void DisplayPlace::stopVideo() {
    m_videoPlayer->stop();
}

void DisplayPlace::setVideoMuted(bool muted) {
    m_videoOutput->setMuted(muted);
}

void DisplayPlace::playAudio(int, const QString& fileSpec) {
    m_audioPlayer->setSource(QUrl::fromLocalFile(fileSpec));
    m_audioPlayer->play();
}

void DisplayPlace::showPictureFile(const QString& fileSpec) {
    const QPixmap pixmap(fileSpec);
    const QSize room = m_place.size().isEmpty() ? QSize(640, 480) : m_place.size();
    m_picture->setPixmap(pixmap.isNull()
                             ? QPixmap()
                             : pixmap.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    m_place.setCurrentWidget(m_picture);
}

void DisplayPlace::showPicture(const QString& fileSpec) {
    m_lastPicture = fileSpec;
    showPictureFile(fileSpec);
}

QImage DisplayPlace::drawText(const QString& text, QSize size) {
    if (size.isEmpty())
        size = QSize(640, 480);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setPen(Qt::white);
    QFont font(QStringLiteral("Liberation Serif"));
    const QRect box = image.rect().adjusted(size.width() / 20, size.height() / 20,
                                            -size.width() / 20, -size.height() / 20);
    const int flags = Qt::AlignCenter | Qt::TextWordWrap;
    for (int points = 72; points >= 8; points -= 2) {
        font.setPointSize(points);
        painter.setFont(font);
        const QRect need = painter.boundingRect(box, flags, text);
        if (need.width() <= box.width() && need.height() <= box.height())
            break;
    }
    painter.drawText(box, flags, text);
    return image;
}

void DisplayPlace::showText(const QString& text, bool speak) {
    const QSize room = m_place.size().isEmpty() ? QSize(640, 480) : m_place.size();
    m_textImage = drawText(text, room);
    m_text->setPixmap(QPixmap::fromImage(m_textImage));
    m_place.setCurrentWidget(m_text);
    if (speak)
        speakText(text);
}

void DisplayPlace::speakText(const QString& text) {
    if (!m_speech)
        m_speech = new QTextToSpeech(this);
    if (m_speech->state() != QTextToSpeech::Error)
        m_speech->say(text);
}

bool DisplayPlace::saveTextPicture(const QString& fileSpec) {
    // Bitmap content under the ".jpg" name, as the render expects.
    return !m_textImage.isNull() && m_textImage.save(fileSpec, "BMP");
}

void DisplayPlace::switchDisplay(int view) {
    if (view == 0) {
        m_place.setCurrentWidget(m_video);
        if (m_logger && !currentVideo().isEmpty())
            m_logger->LogMediaEvent(QStringLiteral("Video"), currentVideo(),
                                    QString::number(videoPositionMs() / 1000.0, 'f', 2));
    } else if (view == 1 && !m_lastPicture.isEmpty()) {
        showPictureFile(m_lastPicture);
        if (m_logger)
            m_logger->LogMediaEvent(QStringLiteral("Pictures"), m_lastPicture);
    } else if (view == 2) {
        m_place.setCurrentWidget(m_text);
    }
}

void DisplayPlace::clearDisplay() {
    m_textImage = QImage();
    m_text->clear();
    m_text->setStyleSheet(QStringLiteral("background: black;"));
    m_place.setCurrentWidget(m_text);
}

void DisplayPlace::stopPlayers() {
    m_videoPlayer->stop();
    m_audioPlayer->stop();
    if (m_speech)
        m_speech->stop();
}

} // namespace cq
