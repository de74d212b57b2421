#pragma once

#include <QPushButton>

namespace cq {

// "Mixer": opens the desktop's volume control, or says which package provides it.
class MixerButton : public QPushButton {
    Q_OBJECT
public:
    explicit MixerButton(QWidget* parent = nullptr);

    static QString mixerProgram() { return QStringLiteral("pavucontrol"); }
    static QString missingMixerMessage();
    // The mixer's path, empty when it is not installed.
    static QString findMixer();

    void cmdMixer_Click();
};

} // namespace cq
