#include "share/widgets/frmConvertAndEmail.h"

#include "platform/ToolLocator.h"
#include "platform/ToolRunner.h"
#include "share/ConversionJob.h"
#include "share/ConversionPresets.h"
#include "share/MailHandOver.h"
#include "share/widgets/frmAddMMSServer.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace cq {

namespace {

constexpr int kOtherOption = 5;

QString FileNotFoundText() {
    return QStringLiteral(
        "File Not Found. An error must have happened during the conversion process.");
}

QLabel* Caption(const QString& text, QWidget* parent, const char* objectName = nullptr) {
    auto* label = new QLabel(text, parent);
    if (objectName)
        label->setObjectName(QString::fromLatin1(objectName));
    label->setWordWrap(true);
    return label;
}

// Restores the normal pointer on every way out of a conversion.
class BusyCursor {
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::BusyCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

} // namespace

frmConvertAndEmail::frmConvertAndEmail(const AppPaths& paths, QWidget* parent)
    : QDialog(parent), m_paths(paths), m_job(new ConversionJob(this)),
      m_mailRunner(new ToolRunner(this)) {
    setObjectName(QStringLiteral("frmConvertAndEmail"));
    setWindowTitle(QStringLiteral("Convert and Email Clip"));
    setModal(true);
    buildLayout();

    // Form_Load
    m_lstConvertToFormat->addItems(ConvertFormats());
    m_lstConvertToFormat->setCurrentRow(0);
    // All ten formats stay in view, also while the progress row takes its place.
    m_lstConvertToFormat->setMinimumHeight(m_lstConvertToFormat->sizeHintForRow(0) *
                                               m_lstConvertToFormat->count() +
                                           2 * m_lstConvertToFormat->frameWidth() + 4);
    for (const ConvertPreset& preset : ConvertPresets())
        m_cboPresets->addItem(preset.name);
    m_cboPresets->setCurrentIndex(-1);
    FillCarrierList();

    connect(m_job, &ConversionJob::progress, m_progress, &QProgressBar::setValue);
}

void frmConvertAndEmail::buildLayout() {
    auto* outer = new QVBoxLayout(this);

    auto* heading = Caption(QStringLiteral("Send Clip to CellPhone or other Mobile Device?"), this,
                            "lblSendClip");
    QFont headingFont = heading->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading->setFont(headingFont);
    outer->addWidget(heading);

    // Step 1: the conversion.
    auto* convertBox = new QGroupBox(QStringLiteral("Convert first?"), this);
    convertBox->setObjectName(QStringLiteral("fraConvert"));
    auto* convertGrid = new QGridLayout(convertBox);
    convertGrid->addWidget(Caption(QStringLiteral("...then Select a File Format other than AVI"),
                                   convertBox, "lblConvertHint"),
                           0, 0, 1, 3);

    auto* lblPresets = Caption(QStringLiteral("Presets"), convertBox, "lblPresets");
    m_cboPresets = new QComboBox(convertBox);
    m_cboPresets->setObjectName(QStringLiteral("cboPresets"));
    m_cboPresets->setPlaceholderText(QStringLiteral("(choose a device)"));
    m_cboPresets->setToolTip(
        QStringLiteral("Choose a device to set the file format and the video resolution for it."));
    lblPresets->setBuddy(m_cboPresets);
    convertGrid->addWidget(lblPresets, 1, 0);
    convertGrid->addWidget(m_cboPresets, 2, 0, 1, 3);

    auto* lblFormat =
        Caption(QStringLiteral("Select File Format"), convertBox, "lblSelectFileFormat");
    m_lstConvertToFormat = new QListWidget(convertBox);
    m_lstConvertToFormat->setObjectName(QStringLiteral("lstConvertToFormat"));
    m_lstConvertToFormat->setToolTip(
        QStringLiteral("The format of the converted file; AVI sends the rendered clip as it is."));
    m_lstConvertToFormat->setAccessibleName(QStringLiteral("Select File Format"));
    m_lstConvertToFormat->setMaximumWidth(110);
    lblFormat->setBuddy(m_lstConvertToFormat);
    convertGrid->addWidget(lblFormat, 3, 0);
    convertGrid->addWidget(m_lstConvertToFormat, 4, 0);

    auto* fraVideoRes = new QGroupBox(QStringLiteral("Video Resolution"), convertBox);
    fraVideoRes->setObjectName(QStringLiteral("fraVideoRes"));
    auto* resLayout = new QGridLayout(fraVideoRes);
    m_resolutionGroup = new QButtonGroup(this);
    const QStringList captions = ScreenResolutionCaptions();
    for (int i = 0; i < captions.size(); ++i) {
        auto* option = new QRadioButton(captions.at(i), fraVideoRes);
        option->setObjectName(QStringLiteral("optScreenRes_%1").arg(i));
        option->setToolTip(
            i == kOtherOption
                ? QStringLiteral("Type the size in the box, for example 640x480.")
                : QStringLiteral("Convert to %1 pixels.").arg(captions.at(i).trimmed()));
        m_resolutionGroup->addButton(option, i);
        m_optScreenRes.append(option);
        resLayout->addWidget(option, i % 3, i / 3);
    }
    m_txtScreenRes = new QLineEdit(fraVideoRes);
    m_txtScreenRes->setObjectName(QStringLiteral("txtScreenRes"));
    m_txtScreenRes->setPlaceholderText(QStringLiteral("640x480"));
    m_txtScreenRes->setToolTip(QStringLiteral("The size for \"Other\": width x height in pixels."));
    m_txtScreenRes->setAccessibleName(QStringLiteral("Other resolution"));
    m_txtScreenRes->setMaximumWidth(110);
    resLayout->addWidget(m_txtScreenRes, 2, 2);
    resLayout->setColumnStretch(3, 1);
    connect(m_txtScreenRes, &QLineEdit::textEdited, this,
            [this] { m_optScreenRes.at(kOtherOption)->setChecked(true); });
    convertGrid->addWidget(fraVideoRes, 3, 1, 2, 2, Qt::AlignTop);
    outer->addWidget(convertBox);

    // Step 2: the recipient.
    auto* sendBox = new QGroupBox(QStringLiteral("Send to a phone"), this);
    sendBox->setObjectName(QStringLiteral("fraSend"));
    auto* sendGrid = new QGridLayout(sendBox);
    sendGrid->addWidget(Caption(QStringLiteral("...then Enter a Phone Number, Select the Carrier, "
                                               "and then click the Email button"),
                                sendBox, "lblSendHint"),
                        0, 0, 1, 2);
    auto* lblPhone = Caption(QStringLiteral("Enter Phone Number"), sendBox, "lblPhoneNumber");
    m_txtPhoneNumber = new QLineEdit(sendBox);
    m_txtPhoneNumber->setObjectName(QStringLiteral("txtPhoneNumber"));
    m_txtPhoneNumber->setToolTip(
        QStringLiteral("The recipient's cell phone number; only its digits are used."));
    lblPhone->setBuddy(m_txtPhoneNumber);
    sendGrid->addWidget(lblPhone, 1, 0);
    sendGrid->addWidget(m_txtPhoneNumber, 2, 0, Qt::AlignTop);

    auto* lblCarrier = Caption(QStringLiteral("Cell Carrier"), sendBox, "lblCellCarrier");
    m_lstCellCarrier = new QListWidget(sendBox);
    m_lstCellCarrier->setObjectName(QStringLiteral("lstCellCarrier"));
    m_lstCellCarrier->setToolTip(QStringLiteral("The recipient's cell carrier."));
    m_lstCellCarrier->setAccessibleName(QStringLiteral("Cell Carrier"));
    lblCarrier->setBuddy(m_lstCellCarrier);
    sendGrid->addWidget(lblCarrier, 1, 1);
    sendGrid->addWidget(m_lstCellCarrier, 2, 1, 3, 1);

    sendGrid->addWidget(Caption(QStringLiteral("Don't See Your Cell Carrier MMS Server?"), sendBox,
                                "lblAddMMSServer"),
                        3, 0);
    auto* carrierButtons = new QHBoxLayout;
    m_cmdAddMMSServer = new QPushButton(QStringLiteral("Add MMS Server"), sendBox);
    m_cmdAddMMSServer->setObjectName(QStringLiteral("cmdAddMMSServer"));
    m_cmdAddMMSServer->setToolTip(QStringLiteral("Add a cell carrier and its MMS server."));
    m_cmdHelp = new QPushButton(QStringLiteral("Help"), sendBox);
    m_cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    m_cmdHelp->setToolTip(QStringLiteral("How to find a cell carrier's MMS server."));
    carrierButtons->addWidget(m_cmdAddMMSServer);
    carrierButtons->addWidget(m_cmdHelp);
    carrierButtons->addStretch(1);
    sendGrid->addLayout(carrierButtons, 4, 0, Qt::AlignTop);
    sendGrid->setColumnStretch(1, 1);
    outer->addWidget(sendBox, 1);

    // Progress of a running conversion.
    auto* progressRow = new QHBoxLayout;
    m_progressLabel = Caption(QStringLiteral("Converting..."), this, "lblProgress");
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("prgConversion"));
    m_progress->setRange(0, 100);
    m_progress->setAccessibleName(QStringLiteral("Conversion progress"));
    m_cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cmdCancel->setToolTip(QStringLiteral("Stop the conversion."));
    progressRow->addWidget(m_progressLabel);
    progressRow->addWidget(m_progress, 1);
    progressRow->addWidget(m_cmdCancel);
    outer->addLayout(progressRow);
    setConverting(false);

    auto* buttons = new QHBoxLayout;
    m_cmdConvertOnly = new QPushButton(QStringLiteral("Convert Only"), this);
    m_cmdConvertOnly->setObjectName(QStringLiteral("cmdConvertOnly"));
    m_cmdConvertOnly->setToolTip(
        QStringLiteral("Convert the clip to the selected format and say where it was saved."));
    m_cmdEmail = new QPushButton(QStringLiteral("Convert and Email"), this);
    m_cmdEmail->setObjectName(QStringLiteral("cmdEmail"));
    m_cmdEmail->setToolTip(QStringLiteral(
        "Creates a message in your desktop's mail client (through xdg-email) with media clip "
        "attached. If a conversion option is selected, the file will be converted first.  If a "
        "phone niumber is entered and an MMS server selected, then  it will be addressed to that "
        "cellphone email address."));
    m_cmdClose = new QPushButton(QStringLiteral("&Close"), this);
    m_cmdClose->setObjectName(QStringLiteral("cmdClose"));
    m_cmdClose->setToolTip(QStringLiteral("Close this window."));
    buttons->addStretch(1);
    buttons->addWidget(m_cmdConvertOnly);
    buttons->addWidget(m_cmdEmail);
    buttons->addWidget(m_cmdClose);
    outer->addLayout(buttons);

    connect(m_cboPresets, &QComboBox::activated, this, &frmConvertAndEmail::cboPresets_Click);
    connect(m_lstConvertToFormat, &QListWidget::itemClicked, this,
            &frmConvertAndEmail::lstConvertToFormat_Click);
    connect(m_lstConvertToFormat, &QListWidget::currentRowChanged, this,
            &frmConvertAndEmail::lstConvertToFormat_Click);
    connect(m_cmdConvertOnly, &QPushButton::clicked, this,
            &frmConvertAndEmail::cmdConvertOnly_Click);
    connect(m_cmdEmail, &QPushButton::clicked, this, &frmConvertAndEmail::cmdEmail_Click);
    connect(m_cmdAddMMSServer, &QPushButton::clicked, this,
            &frmConvertAndEmail::cmdAddMMSServer_Click);
    connect(m_cmdHelp, &QPushButton::clicked, this, &frmConvertAndEmail::cmdHelp_Click);
    connect(m_cmdClose, &QPushButton::clicked, this, &frmConvertAndEmail::reject);
    connect(m_cmdCancel, &QPushButton::clicked, m_job, &ConversionJob::cancel);
    resize(560, 640);
}

void frmConvertAndEmail::FillCarrierList() {
    m_lstCellCarrier->clear();
    m_carriers = cq::FillCarrierList(m_paths.carrierListFileSpec);
    for (const Carrier& carrier : m_carriers)
        m_lstCellCarrier->addItem(carrier.name);
}

void frmConvertAndEmail::clearResolutionOptions() {
    m_resolutionGroup->setExclusive(false);
    for (QRadioButton* option : m_optScreenRes)
        option->setChecked(false);
    m_resolutionGroup->setExclusive(true);
}

void frmConvertAndEmail::cboPresets_Click(int index) {
    if (index < 0 || index >= ConvertPresets().size())
        return;
    const ConvertPreset& preset = ConvertPresets().at(index);
    if (preset.resolutionOption < 0) {
        clearResolutionOptions();
        m_txtScreenRes->clear();
    } else {
        m_optScreenRes.at(preset.resolutionOption)->setChecked(true);
    }
    m_lstConvertToFormat->setCurrentRow(preset.formatIndex);
}

void frmConvertAndEmail::lstConvertToFormat_Click() {
    if (selectedFormat() == u"M4A")
        clearResolutionOptions();
}

QString frmConvertAndEmail::selectedFormat() const {
    const QListWidgetItem* item = m_lstConvertToFormat->currentItem();
    return item ? item->text() : QStringLiteral("AVI");
}

ConversionSettings frmConvertAndEmail::conversionSettings() const {
    ConversionSettings settings;
    settings.outputFormat = selectedFormat();
    for (int i = 0; i < kOtherOption; ++i) {
        if (m_optScreenRes.at(i)->isChecked()) {
            settings.frameSize = NormalizeFrameSize(m_optScreenRes.at(i)->text());
            return settings;
        }
    }
    if (m_optScreenRes.at(kOtherOption)->isChecked())
        settings.frameSize = NormalizeFrameSize(m_txtScreenRes->text());
    return settings;
}

bool frmConvertAndEmail::isConverting() const {
    return m_job->isRunning();
}

void frmConvertAndEmail::setConverting(bool converting) {
    m_progressLabel->setVisible(converting);
    m_progress->setVisible(converting);
    m_cmdCancel->setVisible(converting);
    m_progress->setValue(0);
    for (QWidget* w : std::initializer_list<QWidget*>{
             m_cmdConvertOnly, m_cmdEmail, m_cmdAddMMSServer, m_cboPresets, m_lstConvertToFormat})
        if (w)
            w->setEnabled(!converting);
}

QString frmConvertAndEmail::ConvertFileToEmail(bool report) {
    const QString input = m_paths.gstrFinalMixAVIFileSpec;
    if (!QFileInfo(input).isFile()) {
        showMessage(QStringLiteral("There is no rendered clip yet. Click Render first, then "
                                   "convert or send it."));
        return {};
    }
    const ConversionSettings settings = conversionSettings();
    if (settings.outputFormat == u"AVI") {
        if (report)
            showMessage(QStringLiteral("Successful. \r\n\r\nFile was converted and saved to ") +
                        input);
        return input;
    }
    if (m_optScreenRes.at(kOtherOption)->isChecked() && settings.frameSize.isEmpty() &&
        !IsSoundOnlyFormat(settings.outputFormat)) {
        showMessage(QStringLiteral("Type the size for \"Other\" as width x height in even "
                                   "numbers of pixels, for example 640x480."));
        m_txtScreenRes->setFocus();
        return {};
    }
    const ToolLocation ffmpeg = LocateFfmpeg(m_paths.gstrFFMPEGFileSpec);
    if (!ffmpeg.found()) {
        showMessage(ffmpeg.missingMessage());
        return {};
    }
    const QString output = ConvertedFileSpec(input, settings.outputFormat);
    // A file left by an earlier conversion must not pass for this one's result.
    QFile::remove(output);
    const ToolCommand command =
        ConvertFileForCellPhones(ffmpeg.path, input, output, m_cboPresets->currentText(), settings);
    RunResult result;
    {
        BusyCursor busy;
        setConverting(true);
        result = m_job->run(command);
        setConverting(false);
    }
    if (result.cancelled()) {
        QFile::remove(output);
        showMessage(QStringLiteral("The conversion was cancelled."));
        return {};
    }
    if (!result.ok() || !QFileInfo(output).isFile()) {
        QFile::remove(output); // an unfinished file would not play
        showMessage(FileNotFoundText(), result.errorText);
        return {};
    }
    if (report)
        showMessage(QStringLiteral("Successful. \r\n\r\nFile was converted and saved to ") +
                    output);
    return output;
}

void frmConvertAndEmail::cmdConvertOnly_Click() {
    ConvertFileToEmail(true);
}

void frmConvertAndEmail::cmdEmail_Click() {
    const QString phone = m_txtPhoneNumber->text().trimmed();
    const int carrierRow = m_lstCellCarrier->currentRow();
    const bool carrierChosen = carrierRow >= 0 && carrierRow < m_carriers.size() &&
                               m_lstCellCarrier->currentItem() &&
                               m_lstCellCarrier->currentItem()->isSelected();
    if (!phone.isEmpty() && !carrierChosen) {
        showMessage(QStringLiteral("Select the Recipient's Cell Carrier."));
        return;
    }
    QString recipient;
    if (!phone.isEmpty()) {
        recipient = PhoneAddress(phone, m_carriers.at(carrierRow).domain);
        if (recipient.startsWith(u'@')) {
            showMessage(QStringLiteral("The phone number has no digits. Type the number, for "
                                       "example (555) 123-4567."));
            m_txtPhoneNumber->setFocus();
            return;
        }
    }
    const QString file = ConvertFileToEmail(false);
    if (file.isEmpty())
        return;
    const MailResult sent = SendMail(ClipMailMessage(file, recipient), *m_mailRunner);
    if (!sent.ok)
        showMessage(sent.message, sent.detail);
}

void frmConvertAndEmail::cmdAddMMSServer_Click() {
    frmAddMMSServer dialog(m_paths.carrierListFileSpec, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    FillCarrierList();
    const QList<QListWidgetItem*> added =
        m_lstCellCarrier->findItems(dialog.addedName(), Qt::MatchExactly);
    if (!added.isEmpty())
        m_lstCellCarrier->setCurrentItem(added.first());
}

void frmConvertAndEmail::cmdHelp_Click() {
    QMessageBox::information(
        this, QStringLiteral("MMS Server"),
        QStringLiteral("If your cell carrier is not in the list, please add its MMS server with "
                       "\"Add MMS Server\". You can find a carrier's MMS server on the carrier's "
                       "website, or by searching the web for \"MMS Server\" together with the "
                       "carrier's name and your country."));
}

void frmConvertAndEmail::showMessage(const QString& text, const QString& detail) {
    QMessageBox box(QMessageBox::Information, windowTitle(), text, QMessageBox::Ok, this);
    box.setObjectName(QStringLiteral("msgConvertAndEmail"));
    if (!detail.trimmed().isEmpty())
        box.setDetailedText(detail.trimmed());
    box.exec();
}

void frmConvertAndEmail::reject() {
    // Closing during a conversion stops it first; the window closes once it has ended.
    if (m_job->isRunning()) {
        m_job->cancel();
        return;
    }
    QDialog::reject();
}

} // namespace cq
