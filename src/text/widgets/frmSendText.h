#pragma once

#include <QString>

#include <QDialog>
#include <QPointer>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace cq {

class SpeechVoice;

// "Send Text": types or edits a text. Save shows it once over the whole screen and accepts the
// dialog, whose answer is then typedText(); Cancel rejects it.
class frmSendText : public QDialog {
    Q_OBJECT
public:
    // text: what the box starts with.
    frmSendText(const QString& text, SpeechVoice* voice, QWidget* parent = nullptr);

    // The typed text with its line breaks as CR LF.
    QString typedText() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Form_Load(const QString& text);
    // The three buttons "Preview", "Save" and "Cancel", in that order.
    void lblPreview_Click(int index);
    void preview();
    void saveAndClose();
    void showTextFullScreen(const QString& text);

    QPointer<SpeechVoice> m_voice;
    QLabel* m_label1 = nullptr;
    QPlainTextEdit* m_txtMsg = nullptr;
    QPushButton* m_lblPreview[3] = {};
    bool m_centred = false;
};

} // namespace cq
