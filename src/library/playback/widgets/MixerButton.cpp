#include "library/playback/widgets/MixerButton.h"

#include "platform/Processes.h"

#include <QMessageBox>
#include <QStandardPaths>

namespace cq {

MixerButton::MixerButton(QWidget* parent) : QPushButton(QStringLiteral("Mixer"), parent) {
    setObjectName(QStringLiteral("cmdMixer"));
    setToolTip(QStringLiteral("Opens the PulseAudio Volume Control (pavucontrol)"));
    connect(this, &QPushButton::clicked, this, &MixerButton::cmdMixer_Click);
}

QString MixerButton::missingMixerMessage() {
    return QStringLiteral("The volume mixer pavucontrol is not installed. Install the Debian "
                          "package \"pavucontrol\" to use it.");
}

QString MixerButton::findMixer() {
    return QStandardPaths::findExecutable(mixerProgram());
}

void MixerButton::cmdMixer_Click() {
    const QString mixer = findMixer();
    if (mixer.isEmpty()) {
        QMessageBox::information(this, QStringLiteral("Mixer"), missingMixerMessage());
        return;
    }
    QString commandLine = QStringLiteral("\"%1\"").arg(mixer);
    RunCommandLine(commandLine);
}

} // namespace cq
