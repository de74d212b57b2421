#pragma once

#include "library/playback/VolumeSliderMath.h"

#include <QWidget>

namespace cq {

// The knob of a volume slider: a small raised block the user drags along the track.
class VolumeSliderKnob : public QWidget {
    Q_OBJECT
public:
    explicit VolumeSliderKnob(QWidget* parent);

signals:
    void pressed(int globalX);
    void moved(int globalX);
    void released();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// A volume slider drawn as a track (picSlider_i) with a knob (picSliderLevel_i) inside it. The
// level lives in the knob's position: 0 to 100; the master slider also reports the master value.
// Clicking the track does not move the knob; the arrow, page, Home and End keys do.
class VolumeSlider : public QWidget {
    Q_OBJECT
public:
    VolumeSlider(int index, QWidget* parent = nullptr);

    int index() const { return m_index; }
    int level() const { return SliderLevel(m_knobLeft, travel()); }
    int masterValue() const { return MasterVolumeValue(m_knobLeft, travel()); }
    int knobLeft() const { return m_knobLeft; }
    int travel() const;
    VolumeSliderKnob* knob() const { return m_knob; }

    // Places the knob for a level without telling anyone.
    void setLevel(int level);
    // Moves the knob as a drag or a key would, and tells.
    void moveKnobTo(int knobLeft);

    QSize sizeHint() const override { return {120, 22}; }
    QSize minimumSizeHint() const override { return {60, 18}; }

signals:
    void levelChanged(int index, int level);
    void masterValueChanged(int masterValue);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void placeKnob();
    void updateToolTip();

    int m_index;
    int m_knobLeft = 0;
    int m_level = 100; // kept so a resize keeps the level
    VolumeSliderKnob* m_knob = nullptr;
    KnobDrag m_drag;
};

} // namespace cq
