#include "library/playback/widgets/VolumeLevelsPanel.h"

#include "library/playback/MasterVolume.h"
#include "library/playback/MediaPlayer.h"
#include "library/playback/VolumeSliderMath.h"
#include "library/playback/widgets/MixerButton.h"
#include "library/playback/widgets/VolumeSlider.h"

#include <QGridLayout>
#include <QLabel>

namespace cq {

VolumeLevelsPanel::VolumeLevelsPanel(MediaPlayer* recordedAudioPlayer, MasterVolume* master,
                                     QWidget* parent)
    : QWidget(parent), m_recordedPlayer(recordedAudioPlayer), m_master(master) {
    setObjectName(QStringLiteral("volumeLevels"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    m_lblRecordedAudioVolume = new QLabel(QStringLiteral("Recorded Audio Volume"), this);
    m_lblRecordedAudioVolume->setObjectName(QStringLiteral("lblRecordedAudioVolume"));
    m_recordedSlider = new VolumeSlider(kRecordedAudioIndex, this);
    m_recordedSlider->setAccessibleName(m_lblRecordedAudioVolume->text());
    m_recordedSlider->setLevel(recordedAudioPlayer ? recordedAudioPlayer->volume() : kLevelScale);
    m_lblRecordedAudioVolume->setBuddy(m_recordedSlider);

    m_lblMasterVolume = new QLabel(QStringLiteral("Master Volume"), this);
    m_lblMasterVolume->setObjectName(QStringLiteral("lblMasterVolume"));
    m_masterSlider = new VolumeSlider(kMasterIndex, this);
    m_masterSlider->setAccessibleName(m_lblMasterVolume->text());
    m_lblMasterVolume->setBuddy(m_masterSlider);

    m_cmdMixer = new MixerButton(this);
    layout->addWidget(m_lblRecordedAudioVolume, 0, 0);
    layout->addWidget(m_recordedSlider, 0, 1);
    layout->addWidget(m_lblMasterVolume, 1, 0);
    layout->addWidget(m_masterSlider, 1, 1);
    layout->addWidget(m_cmdMixer, 0, 2, 2, 1);
    layout->setColumnStretch(1, 1);

    connect(m_recordedSlider, &VolumeSlider::levelChanged, this, [this](int, int level) {
        if (m_recordedPlayer)
            m_recordedPlayer->setVolume(level * kPlayerVolumeMax / kLevelScale);
    });
    connect(m_masterSlider, &VolumeSlider::masterValueChanged, this, [this](int value) {
        if (m_master)
            m_master->setValue(value);
    });
    if (m_master) {
        // The knob starts where the sound device already is.
        connect(m_master, &MasterVolume::valueRead, this,
                [this](int value) { m_masterSlider->setLevel(MasterVolumePercent(value)); });
        m_master->readValue();
    }
}

} // namespace cq
