#pragma once

#include <QString>

#include <QDialog>
#include <QPointer>

class QTimer;

namespace cq {

class SpeechVoice;
class TextDisplaySurface;

// Shows a text over the whole screen, as large as it fits, for a time that grows with
// its length. A click closes it at once and silences the voice.
class frmDisplayText : public QDialog {
    Q_OBJECT
public:
    frmDisplayText(QString text, SpeechVoice* voice, QWidget* parent = nullptr);

    TextDisplaySurface* surface() const { return m_picDisplay; }
    int displayMilliseconds() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Form_Load();
    bool Preview();
    void picDisplay_Click();
    void tmrDisplayTime_Timer();

    QString m_text;
    QPointer<SpeechVoice> m_voice;
    TextDisplaySurface* m_picDisplay = nullptr;
    QTimer* m_tmrDisplayTime = nullptr;
    QTimer* m_tmrDelayedSoundTimer = nullptr;
    bool m_loaded = false;
};

} // namespace cq
