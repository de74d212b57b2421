#pragma once

#include "take/SoundLevel.h"

#include <QProgressBar>

namespace cq {

// A horizontal bar from the floor to 0 dBFS: filled to the RMS level, with a mark at the held
// peak. As a progress bar its value is the level in whole dBFS, which screen readers announce.
class LevelBar : public QProgressBar {
    Q_OBJECT
public:
    explicit LevelBar(QWidget* parent = nullptr);

    void setLevel(const SoundLevel& level);
    SoundLevel level() const { return m_level; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int xOf(double db) const;

    SoundLevel m_level;
};

} // namespace cq
