#include "text/widgets/frmAddMultipleLinesOfText.h"

#include "platform/widgets/CenterForm.h"
#include "platform/widgets/NamedButton.h"
#include "text/TextListFile.h"

#include <QHBoxLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace cq {

frmAddMultipleLinesOfText::frmAddMultipleLinesOfText(const QString& textListFileSpec,
                                                     const QString& text, QWidget* parent)
    : QDialog(parent), m_fileSpec(textListFileSpec) {
    setObjectName(QStringLiteral("frmAddMultipleLinesOfText"));
    setWindowTitle(QStringLiteral("Add Multiple Lines Of Text"));
    auto* layout = new QVBoxLayout(this);
    m_txtMultipleLinesOfText = new QPlainTextEdit(this);
    m_txtMultipleLinesOfText->setObjectName(QStringLiteral("txtMultipleLinesOfText"));
    m_txtMultipleLinesOfText->setAccessibleName(QStringLiteral("Text list, one entry a line"));
    m_txtMultipleLinesOfText->setTabChangesFocus(true);
    QString shown = text;
    m_txtMultipleLinesOfText->setPlainText(
        shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    layout->addWidget(m_txtMultipleLinesOfText, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    m_cmdOK = NamedButton(QStringLiteral("OK"), QStringLiteral("cmdOK"),
                          QStringLiteral("Keep this list"), this);
    m_cmdOK->setAutoDefault(false);
    m_cmdCancel = NamedButton(QStringLiteral("&Cancel"), QStringLiteral("cmdCancel"),
                              QStringLiteral("Leave the list as it was"), this);
    m_cmdCancel->setAutoDefault(false);
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);
    layout->addLayout(buttons);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmAddMultipleLinesOfText::cmdOK_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmAddMultipleLinesOfText::reject);

    resize(480, 360);
}

void frmAddMultipleLinesOfText::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!m_centred) {
        m_centred = true;
        CenterForm(this);
    }
}

void frmAddMultipleLinesOfText::cmdOK_Click() {
    QString text = m_txtMultipleLinesOfText->toPlainText();
    text.replace(u'\n', QStringLiteral("\r\n"));
    if (!SaveTextListText(text, m_fileSpec)) {
        QMessageBox::warning(
            this, windowTitle(),
            QStringLiteral("The text list could not be written to \"%1\".").arg(m_fileSpec));
        return;
    }
    accept();
}

} // namespace cq
