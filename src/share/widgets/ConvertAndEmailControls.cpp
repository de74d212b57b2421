#include "share/widgets/ConvertAndEmailControls.h"

#include "platform/widgets/NamedButton.h"
#include "share/ConversionPresets.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace cq {

namespace {

QLabel* Caption(const QString& text, QWidget* parent, const char* objectName) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(objectName));
    label->setWordWrap(true);
    return label;
}

} // namespace

void ConvertAndEmailControls::setupUi(QDialog* dialog) {
    auto* outer = new QVBoxLayout(dialog);
    outer->addWidget(heading(dialog));
    outer->addWidget(convertBox(dialog));
    outer->addWidget(sendBox(dialog), 1);
    outer->addLayout(progressRow(dialog));
    outer->addLayout(buttonRow(dialog));
    dialog->resize(560, 640);
}

QLabel* ConvertAndEmailControls::heading(QWidget* parent) {
    auto* label = Caption(QStringLiteral("Send Clip to CellPhone or other Mobile Device?"), parent,
                          "lblSendClip");
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.2);
    label->setFont(font);
    return label;
}

// Step 1: the conversion.
QGroupBox* ConvertAndEmailControls::convertBox(QWidget* parent) {
    auto* box = new QGroupBox(QStringLiteral("Convert first?"), parent);
    box->setObjectName(QStringLiteral("fraConvert"));
    auto* grid = new QGridLayout(box);
    grid->addWidget(Caption(QStringLiteral("...then Select a File Format other than AVI"), box,
                            "lblConvertHint"),
                    0, 0, 1, 3);
    addPresetChoice(box, grid);
    addFormatChoice(box, grid);
    grid->addWidget(resolutionFrame(box), 3, 1, 2, 2, Qt::AlignTop);
    return box;
}

void ConvertAndEmailControls::addPresetChoice(QGroupBox* box, QGridLayout* grid) {
    auto* label = Caption(QStringLiteral("Presets"), box, "lblPresets");
    cboPresets = new QComboBox(box);
    cboPresets->setObjectName(QStringLiteral("cboPresets"));
    cboPresets->setPlaceholderText(QStringLiteral("(choose a device)"));
    cboPresets->setToolTip(
        QStringLiteral("Choose a device to set the file format and the video resolution for it."));
    label->setBuddy(cboPresets);
    grid->addWidget(label, 1, 0);
    grid->addWidget(cboPresets, 2, 0, 1, 3);
}

void ConvertAndEmailControls::addFormatChoice(QGroupBox* box, QGridLayout* grid) {
    auto* label = Caption(QStringLiteral("Select File Format"), box, "lblSelectFileFormat");
    lstConvertToFormat = new QListWidget(box);
    lstConvertToFormat->setObjectName(QStringLiteral("lstConvertToFormat"));
    lstConvertToFormat->setToolTip(
        QStringLiteral("The format of the converted file; AVI sends the rendered clip as it is."));
    lstConvertToFormat->setAccessibleName(QStringLiteral("Select File Format"));
    lstConvertToFormat->setMaximumWidth(110);
    label->setBuddy(lstConvertToFormat);
    grid->addWidget(label, 3, 0);
    grid->addWidget(lstConvertToFormat, 4, 0);
}

QGroupBox* ConvertAndEmailControls::resolutionFrame(QWidget* parent) {
    auto* frame = new QGroupBox(QStringLiteral("Video Resolution"), parent);
    frame->setObjectName(QStringLiteral("fraVideoRes"));
    auto* layout = new QGridLayout(frame);
    resolutionGroup = new QButtonGroup(frame);
    const QStringList captions = ScreenResolutionCaptions();
    for (int i = 0; i < captions.size(); ++i) {
        auto* option = new QRadioButton(captions.at(i), frame);
        option->setObjectName(QStringLiteral("optScreenRes_%1").arg(i));
        option->setToolTip(
            i == kOtherOption
                ? QStringLiteral("Type the size in the box, for example 640x480.")
                : QStringLiteral("Convert to %1 pixels.").arg(captions.at(i).trimmed()));
        resolutionGroup->addButton(option, i);
        optScreenRes.append(option);
        layout->addWidget(option, i % 3, i / 3);
    }
    txtScreenRes = new QLineEdit(frame);
    txtScreenRes->setObjectName(QStringLiteral("txtScreenRes"));
    txtScreenRes->setPlaceholderText(QStringLiteral("640x480"));
    txtScreenRes->setToolTip(QStringLiteral("The size for \"Other\": width x height in pixels."));
    txtScreenRes->setAccessibleName(QStringLiteral("Other resolution"));
    txtScreenRes->setMaximumWidth(110);
    layout->addWidget(txtScreenRes, 2, 2);
    layout->setColumnStretch(3, 1);
    return frame;
}

// Step 2: the recipient.
QGroupBox* ConvertAndEmailControls::sendBox(QWidget* parent) {
    auto* box = new QGroupBox(QStringLiteral("Send to a phone"), parent);
    box->setObjectName(QStringLiteral("fraSend"));
    auto* grid = new QGridLayout(box);
    grid->addWidget(Caption(QStringLiteral("...then Enter a Phone Number, Select the Carrier, and "
                                           "then click the Email button"),
                            box, "lblSendHint"),
                    0, 0, 1, 2);
    addPhoneNumber(box, grid);
    addCarrierChoice(box, grid);
    addCarrierButtons(box, grid);
    grid->setColumnStretch(1, 1);
    return box;
}

void ConvertAndEmailControls::addPhoneNumber(QGroupBox* box, QGridLayout* grid) {
    auto* label = Caption(QStringLiteral("Enter Phone Number"), box, "lblPhoneNumber");
    txtPhoneNumber = new QLineEdit(box);
    txtPhoneNumber->setObjectName(QStringLiteral("txtPhoneNumber"));
    txtPhoneNumber->setToolTip(
        QStringLiteral("The recipient's cell phone number; only its digits are used."));
    label->setBuddy(txtPhoneNumber);
    grid->addWidget(label, 1, 0);
    grid->addWidget(txtPhoneNumber, 2, 0, Qt::AlignTop);
}

void ConvertAndEmailControls::addCarrierChoice(QGroupBox* box, QGridLayout* grid) {
    auto* label = Caption(QStringLiteral("Cell Carrier"), box, "lblCellCarrier");
    lstCellCarrier = new QListWidget(box);
    lstCellCarrier->setObjectName(QStringLiteral("lstCellCarrier"));
    lstCellCarrier->setToolTip(QStringLiteral("The recipient's cell carrier."));
    lstCellCarrier->setAccessibleName(QStringLiteral("Cell Carrier"));
    label->setBuddy(lstCellCarrier);
    grid->addWidget(label, 1, 1);
    grid->addWidget(lstCellCarrier, 2, 1, 3, 1);
}

void ConvertAndEmailControls::addCarrierButtons(QGroupBox* box, QGridLayout* grid) {
    grid->addWidget(
        Caption(QStringLiteral("Don't See Your Cell Carrier MMS Server?"), box, "lblAddMMSServer"),
        3, 0);
    cmdAddMMSServer =
        NamedButton(QStringLiteral("Add MMS Server"), QStringLiteral("cmdAddMMSServer"),
                    QStringLiteral("Add a cell carrier and its MMS server."), box);
    cmdHelp = NamedButton(QStringLiteral("Help"), QStringLiteral("cmdHelp"),
                          QStringLiteral("How to find a cell carrier's MMS server."), box);
    auto* row = new QHBoxLayout;
    row->addWidget(cmdAddMMSServer);
    row->addWidget(cmdHelp);
    row->addStretch(1);
    grid->addLayout(row, 4, 0, Qt::AlignTop);
}

// Shown while a conversion runs.
QBoxLayout* ConvertAndEmailControls::progressRow(QWidget* parent) {
    progressLabel = Caption(QStringLiteral("Converting..."), parent, "lblProgress");
    progress = new QProgressBar(parent);
    progress->setObjectName(QStringLiteral("prgConversion"));
    progress->setRange(0, 100);
    progress->setAccessibleName(QStringLiteral("Conversion progress"));
    cmdCancel = NamedButton(QStringLiteral("Cancel"), QStringLiteral("cmdCancel"),
                            QStringLiteral("Stop the conversion."), parent);
    auto* row = new QHBoxLayout;
    row->addWidget(progressLabel);
    row->addWidget(progress, 1);
    row->addWidget(cmdCancel);
    return row;
}

QBoxLayout* ConvertAndEmailControls::buttonRow(QWidget* parent) {
    cmdConvertOnly = NamedButton(
        QStringLiteral("Convert Only"), QStringLiteral("cmdConvertOnly"),
        QStringLiteral("Convert the clip to the selected format and say where it was saved."),
        parent);
    cmdEmail = NamedButton(
        QStringLiteral("Convert and Email"), QStringLiteral("cmdEmail"),
        QStringLiteral("Creates a message in your desktop's mail client (through xdg-email) with "
                       "media clip attached. If a conversion option is selected, the file will be "
                       "converted first.  If a phone niumber is entered and an MMS server "
                       "selected, then  it will be addressed to that cellphone email address."),
        parent);
    cmdClose = NamedButton(QStringLiteral("&Close"), QStringLiteral("cmdClose"),
                           QStringLiteral("Close this window."), parent);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(cmdConvertOnly);
    row->addWidget(cmdEmail);
    row->addWidget(cmdClose);
    return row;
}

} // namespace cq
