#include "share/widgets/frmConvertAndEmail.h"

#include "platform/ToolLocator.h"
#include "share/ConversionJob.h"
#include "share/ConversionPresets.h"
#include "share/MailHandOver.h"
#include "share/widgets/frmAddMMSServer.h"
#include "studio/FinalMix.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

namespace cq {

namespace {

constexpr int kOtherOption = ConvertAndEmailControls::kOtherOption;

QString FileNotFoundText() {
    return QStringLiteral(
        "File Not Found. An error must have happened during the conversion process.");
}

QString SuccessfulText(const QString& file) {
    return QStringLiteral("Successful. \r\n\r\nFile was converted and saved to ") + file;
}

} // namespace

frmConvertAndEmail::frmConvertAndEmail(const AppPaths& paths, QWidget* parent)
    : QDialog(parent), m_paths(paths), m_job(new ConversionJob(this)),
      m_mail(new MailHandOver(this)) {
    setObjectName(QStringLiteral("frmConvertAndEmail"));
    setWindowTitle(QStringLiteral("Convert and Email Clip"));
    setModal(true);
    m_ui.setupUi(this);
    Form_Load();
    connectControls();
    connectJobs();
    setWork(Work::None);
}

frmConvertAndEmail::~frmConvertAndEmail() {
    setWork(Work::None); // gives the pointer back if the window goes during a job
}

void frmConvertAndEmail::Form_Load() {
    QListWidget* formats = m_ui.lstConvertToFormat;
    formats->addItems(ConvertFormats());
    formats->setCurrentRow(0);
    // All ten formats stay in view, also while the progress row takes its place.
    formats->setMinimumHeight(formats->sizeHintForRow(0) * formats->count() +
                              2 * formats->frameWidth() + 4);
    for (const ConvertPreset& preset : ConvertPresets())
        m_ui.cboPresets->addItem(preset.name);
    m_ui.cboPresets->setCurrentIndex(-1);
    FillCarrierList();
}

void frmConvertAndEmail::connectControls() {
    connect(m_ui.txtScreenRes, &QLineEdit::textEdited, this,
            [this] { m_ui.optScreenRes.at(kOtherOption)->setChecked(true); });
    connect(m_ui.cboPresets, &QComboBox::activated, this, &frmConvertAndEmail::cboPresets_Click);
    connect(m_ui.lstConvertToFormat, &QListWidget::itemClicked, this,
            &frmConvertAndEmail::lstConvertToFormat_Click);
    connect(m_ui.lstConvertToFormat, &QListWidget::currentRowChanged, this,
            &frmConvertAndEmail::lstConvertToFormat_Click);
    connect(m_ui.cmdConvertOnly, &QPushButton::clicked, this,
            &frmConvertAndEmail::cmdConvertOnly_Click);
    connect(m_ui.cmdEmail, &QPushButton::clicked, this, &frmConvertAndEmail::cmdEmail_Click);
    connect(m_ui.cmdAddMMSServer, &QPushButton::clicked, this,
            &frmConvertAndEmail::cmdAddMMSServer_Click);
    connect(m_ui.cmdHelp, &QPushButton::clicked, this, &frmConvertAndEmail::cmdHelp_Click);
    connect(m_ui.cmdClose, &QPushButton::clicked, this, &frmConvertAndEmail::reject);
    connect(m_ui.cmdCancel, &QPushButton::clicked, m_job, &ConversionJob::cancel);
}

void frmConvertAndEmail::connectJobs() {
    connect(m_job, &ConversionJob::progressed, m_ui.progress, &QProgressBar::setValue);
    connect(m_job, &ConversionJob::ended, this, &frmConvertAndEmail::onConversionEnded);
    connect(m_mail, &MailHandOver::finished, this, &frmConvertAndEmail::onMailFinished);
}

void frmConvertAndEmail::FillCarrierList() {
    m_ui.lstCellCarrier->clear();
    m_carriers = cq::FillCarrierList(m_paths.carrierListFileSpec);
    for (const Carrier& carrier : m_carriers)
        m_ui.lstCellCarrier->addItem(carrier.name);
}

void frmConvertAndEmail::clearResolutionOptions() {
    m_ui.resolutionGroup->setExclusive(false);
    for (QRadioButton* option : m_ui.optScreenRes)
        option->setChecked(false);
    m_ui.resolutionGroup->setExclusive(true);
}

void frmConvertAndEmail::cboPresets_Click(int index) {
    if (index < 0 || index >= ConvertPresets().size())
        return;
    const ConvertPreset& preset = ConvertPresets().at(index);
    if (preset.resolutionOption < 0) {
        clearResolutionOptions();
        m_ui.txtScreenRes->clear();
    } else {
        m_ui.optScreenRes.at(preset.resolutionOption)->setChecked(true);
    }
    m_ui.lstConvertToFormat->setCurrentRow(preset.formatIndex);
}

void frmConvertAndEmail::lstConvertToFormat_Click() {
    if (selectedFormat() == u"M4A")
        clearResolutionOptions();
}

QString frmConvertAndEmail::selectedFormat() const {
    const QListWidgetItem* item = m_ui.lstConvertToFormat->currentItem();
    return item ? item->text() : QStringLiteral("AVI");
}

ConversionSettings frmConvertAndEmail::conversionSettings() const {
    ConversionSettings settings;
    settings.outputFormat = selectedFormat();
    for (int i = 0; i < kOtherOption; ++i) {
        if (m_ui.optScreenRes.at(i)->isChecked()) {
            settings.frameSize = NormalizeFrameSize(m_ui.optScreenRes.at(i)->text());
            return settings;
        }
    }
    if (m_ui.optScreenRes.at(kOtherOption)->isChecked())
        settings.frameSize = NormalizeFrameSize(m_ui.txtScreenRes->text());
    return settings;
}

void frmConvertAndEmail::setWork(Work work) {
    // The hourglass while a job runs, given back exactly once when it ends.
    if (m_work == Work::None && work != Work::None)
        QApplication::setOverrideCursor(Qt::BusyCursor);
    else if (m_work != Work::None && work == Work::None)
        QApplication::restoreOverrideCursor();
    m_work = work;
    const bool converting = work == Work::Converting;
    m_ui.progressLabel->setVisible(converting);
    m_ui.progress->setVisible(converting);
    m_ui.cmdCancel->setVisible(converting);
    if (!converting)
        m_ui.progress->setValue(0);
    // A second click would start a second job over the first one's files.
    for (QWidget* w :
         std::initializer_list<QWidget*>{m_ui.cmdConvertOnly, m_ui.cmdEmail, m_ui.cmdAddMMSServer,
                                         m_ui.cboPresets, m_ui.lstConvertToFormat})
        w->setEnabled(work == Work::None);
}

void frmConvertAndEmail::ConvertFileToEmail() {
    const QString input = LatestFinalMix(m_paths);
    if (!QFileInfo(input).isFile()) {
        showMessage(QStringLiteral("There is no rendered clip yet. Click Render first, then "
                                   "convert or send it."));
        return;
    }
    const ConversionSettings settings = conversionSettings();
    // An AVI result already is what "AVI" asks for; an MP4 result is converted like any other.
    if (settings.outputFormat == u"AVI" && QFileInfo(input).suffix() == u"avi") {
        onConverted(input);
        return;
    }
    if (m_ui.optScreenRes.at(kOtherOption)->isChecked() && settings.frameSize.isEmpty() &&
        !IsSoundOnlyFormat(settings.outputFormat)) {
        showMessage(QStringLiteral("Type the size for \"Other\" as width x height in even "
                                   "numbers of pixels, for example 640x480."));
        m_ui.txtScreenRes->setFocus();
        return;
    }
    const ToolLocation ffmpeg = LocateFfmpeg(m_paths.gstrFFMPEGFileSpec);
    if (!ffmpeg.found()) {
        showMessage(ffmpeg.missingMessage());
        return;
    }
    const QString output = ConvertedFileSpec(input, settings.outputFormat);
    setWork(Work::Converting);
    m_job->start(ConvertFileForCellPhones(ffmpeg.path, input, output,
                                          m_ui.cboPresets->currentText(), settings),
                 output);
}

void frmConvertAndEmail::onConverted(const QString& file) {
    setWork(Work::None);
    if (closeIfAsked())
        return;
    if (!m_sendTo) {
        showMessage(SuccessfulText(file));
        return;
    }
    const QString recipient = *m_sendTo;
    m_sendTo.reset();
    setWork(Work::Mailing);
    m_mail->start(ClipMailMessage(file, recipient));
}

void frmConvertAndEmail::onConversionEnded(const JobEnd& end) {
    if (end.isDone())
        return onConverted(m_job->output());
    setWork(Work::None);
    if (closeIfAsked())
        return;
    if (end.isFailed())
        showMessage(FileNotFoundText(), end.message);
    else
        showMessage(QStringLiteral("The conversion was cancelled."));
}

void frmConvertAndEmail::onMailFinished(const MailResult& result) {
    setWork(Work::None);
    if (!closeIfAsked() && !result.ok)
        showMessage(result.message, result.detail);
}

void frmConvertAndEmail::cmdConvertOnly_Click() {
    m_sendTo.reset();
    ConvertFileToEmail();
}

void frmConvertAndEmail::cmdEmail_Click() {
    m_sendTo.reset();
    const std::optional<QString> recipient = phoneRecipient();
    if (!recipient)
        return;
    m_sendTo = *recipient;
    ConvertFileToEmail();
}

std::optional<QString> frmConvertAndEmail::phoneRecipient() {
    const QString phone = m_ui.txtPhoneNumber->text().trimmed();
    const int carrierRow = m_ui.lstCellCarrier->currentRow();
    const bool carrierChosen = carrierRow >= 0 && carrierRow < m_carriers.size() &&
                               m_ui.lstCellCarrier->currentItem() &&
                               m_ui.lstCellCarrier->currentItem()->isSelected();
    if (phone.isEmpty())
        return QString();
    if (!carrierChosen) {
        showMessage(QStringLiteral("Select the Recipient's Cell Carrier."));
        return std::nullopt;
    }
    const QString recipient = PhoneAddress(phone, m_carriers.at(carrierRow).domain);
    if (recipient.startsWith(u'@')) {
        showMessage(QStringLiteral("The phone number has no digits. Type the number, for "
                                   "example (555) 123-4567."));
        m_ui.txtPhoneNumber->setFocus();
        return std::nullopt;
    }
    return recipient;
}

void frmConvertAndEmail::cmdAddMMSServer_Click() {
    frmAddMMSServer dialog(m_paths.carrierListFileSpec, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    FillCarrierList();
    const QList<QListWidgetItem*> added =
        m_ui.lstCellCarrier->findItems(dialog.addedName(), Qt::MatchExactly);
    if (!added.isEmpty())
        m_ui.lstCellCarrier->setCurrentItem(added.first());
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
    // Closing during a conversion stops it first; the window closes once the job has ended.
    if (m_work != Work::None) {
        m_closeWhenIdle = true;
        m_job->cancel();
        return;
    }
    QDialog::reject();
}

bool frmConvertAndEmail::closeIfAsked() {
    if (!m_closeWhenIdle)
        return false;
    m_closeWhenIdle = false;
    m_sendTo.reset();
    QDialog::reject();
    return true;
}

} // namespace cq
