#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;

namespace cq {

class MasterVolume;
class MediaPlayer;
class MixerButton;
class VolumeSlider;

// "Recorded Audio Volume" for the replayed voice, "Master Volume" for the whole sound device,
// and the mixer button.
class VolumeLevelsPanel : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRecordedAudioIndex = 8;
    static constexpr int kMasterIndex = 9;

    VolumeLevelsPanel(MediaPlayer* recordedAudioPlayer, MasterVolume* master,
                      QWidget* parent = nullptr);

private:
    QPointer<MediaPlayer> m_recordedPlayer;
    QPointer<MasterVolume> m_master;
    QLabel* m_lblRecordedAudioVolume = nullptr;
    QLabel* m_lblMasterVolume = nullptr;
    VolumeSlider* m_recordedSlider = nullptr;
    VolumeSlider* m_masterSlider = nullptr;
    MixerButton* m_cmdMixer = nullptr;
};

} // namespace cq
