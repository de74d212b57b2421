#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;

namespace cq {

class LevelBar;
class LevelMeter;

// The microphone's level bar and the warning beside it, brought up to date about 20 times a
// second from the meter that measures the captured sound.
class MicrophoneMeter : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRefreshMs = 50;

    explicit MicrophoneMeter(const LevelMeter& meter, QWidget* parent = nullptr);

    LevelBar* bar() const { return m_bar; }
    QLabel* warningLabel() const { return m_warning; }
    // Reads the meter now (the timer does it on its own).
    void refresh();

private:
    const LevelMeter& m_meter;
    LevelBar* m_bar;
    QLabel* m_warning;
    QTimer m_refresh;
};

inline constexpr char kNoSoundWarning[] = "No sound from the microphone";
inline constexpr char kTooLoudWarning[] = "Too loud";

} // namespace cq
