#pragma once

#include <QVideoWidget>

namespace cq {

class MediaPlayer;

// The video player of the display place. A click reaches the player's click notification and,
// in full screen, leaves full screen; so does Escape.
class VideoPlayerWidget : public QVideoWidget {
    Q_OBJECT
public:
    explicit VideoPlayerWidget(QWidget* parent = nullptr);

    MediaPlayer* player() const { return m_player; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    MediaPlayer* m_player = nullptr;
};

} // namespace cq
