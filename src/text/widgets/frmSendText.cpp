#include "text/widgets/frmSendText.h"

#include "platform/widgets/CenterForm.h"
#include "platform/widgets/NamedButton.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/frmDisplayText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace cq {

namespace {
QString toCrLf(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text.replace(u'\n', QStringLiteral("\r\n"));
}
} // namespace

frmSendText::frmSendText(const QString& text, SpeechVoice* voice, QWidget* parent)
    : QDialog(parent), m_voice(voice) {
    setObjectName(QStringLiteral("frmSendText"));
    setWindowTitle(QStringLiteral("Send Text"));

    auto* layout = new QVBoxLayout(this);
    m_label1 = new QLabel(QStringLiteral("Type your message here:"), this);
    m_label1->setObjectName(QStringLiteral("Label1"));
    m_txtMsg = new QPlainTextEdit(this);
    m_txtMsg->setObjectName(QStringLiteral("txtMsg"));
    m_txtMsg->setAccessibleName(QStringLiteral("Type your message here:"));
    m_txtMsg->setTabChangesFocus(true);
    m_label1->setBuddy(m_txtMsg);
    layout->addWidget(m_label1);
    layout->addWidget(m_txtMsg, 1);

    auto* buttons = new QHBoxLayout;
    const QString captions[3] = {QStringLiteral("Preview"), QStringLiteral("Save"),
                                 QStringLiteral("Cancel")};
    const QString tips[3] = {QStringLiteral("See the message as it will be shown"),
                             QStringLiteral("Keep the message"),
                             QStringLiteral("Leave the message as it was")};
    for (int i = 0; i < 3; ++i) {
        m_lblPreview[i] =
            NamedButton(captions[i], QStringLiteral("lblPreview_%1").arg(i), tips[i], this);
        m_lblPreview[i]->setAutoDefault(false);
        connect(m_lblPreview[i], &QPushButton::clicked, this, [this, i] { lblPreview_Click(i); });
        buttons->addWidget(m_lblPreview[i]);
    }
    layout->addLayout(buttons);
    resize(420, 220);
    Form_Load(text);
}

void frmSendText::Form_Load(const QString& text) {
    QString shown = text;
    m_txtMsg->setPlainText(shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void frmSendText::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!m_centred) {
        m_centred = true;
        CenterForm(this);
        m_txtMsg->setFocus();
    }
}

QString frmSendText::typedText() const {
    return toCrLf(m_txtMsg->toPlainText());
}

void frmSendText::lblPreview_Click(int index) {
    if (index == 0)
        preview();
    else if (index == 1)
        saveAndClose();
    else
        reject();
}

void frmSendText::preview() {
    const QString text = typedText();
    if (!text.isEmpty())
        showTextFullScreen(text);
}

void frmSendText::saveAndClose() {
    const QString text = typedText();
    if (text.isEmpty())
        return;
    hide();
    showTextFullScreen(text);
    done(QDialog::Accepted);
}

void frmSendText::showTextFullScreen(const QString& text) {
    frmDisplayText display(text, m_voice, parentWidget() ? parentWidget() : this);
    display.exec();
}

} // namespace cq
