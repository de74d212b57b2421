#pragma once

#include "studio/StudioSettings.h"

#include <QDialog>
#include <QPointer>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace cq {

class SpeechVoice;

// "Send Text": types or edits the current text. Save leaves it in the current text (shown once
// over the whole screen); Cancel raises the cancel flag.
class frmSendText : public QDialog {
    Q_OBJECT
public:
    frmSendText(StudioSettings& studio, SpeechVoice* voice, QWidget* parent = nullptr);

    // The typed text with its line breaks as CR LF.
    QString typedText() const;

public slots:
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Form_Load();
    // The three buttons "Preview", "Save" and "Cancel", in that order.
    void lblPreview_Click(int index);
    void preview();
    void saveAndClose();
    void showTextFullScreen();

    StudioSettings& m_studio;
    QPointer<SpeechVoice> m_voice;
    QLabel* m_label1 = nullptr;
    QPlainTextEdit* m_txtMsg = nullptr;
    QPushButton* m_lblPreview[3] = {};
    bool m_centred = false;
};

} // namespace cq
