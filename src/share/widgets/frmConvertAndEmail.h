#pragma once

#include "share/CarrierList.h"
#include "share/ConversionCommand.h"
#include "studio/AppPaths.h"

#include <QDialog>
#include <QList>

class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace cq {

class ConversionJob;
class ToolRunner;

// "Convert and Email Clip": converts the rendered clip for a phone or a player and hands the
// result to the mail client, addressed to a phone through its carrier's MMS gateway on request.
class frmConvertAndEmail : public QDialog {
    Q_OBJECT
public:
    explicit frmConvertAndEmail(const AppPaths& paths, QWidget* parent = nullptr);

    // The settings the next conversion would use; frameSize is empty when no size is chosen
    // (or "Other" holds no valid size).
    ConversionSettings conversionSettings() const;
    const QList<Carrier>& carriers() const { return m_carriers; }
    bool isConverting() const;

    void FillCarrierList();
    void cboPresets_Click(int index);
    void lstConvertToFormat_Click();
    // The file to send: the rendered clip for "AVI", else the converted file; empty when there
    // is none (the user has been told why). report: also say where a converted file went.
    QString ConvertFileToEmail(bool report);

public slots:
    void reject() override;

private:
    void buildLayout();
    QString selectedFormat() const;
    void clearResolutionOptions();
    void setConverting(bool converting);
    void cmdConvertOnly_Click();
    void cmdEmail_Click();
    void cmdAddMMSServer_Click();
    void cmdHelp_Click();
    void showMessage(const QString& text, const QString& detail = QString());

    AppPaths m_paths;
    QList<Carrier> m_carriers;
    ConversionJob* m_job = nullptr;
    ToolRunner* m_mailRunner = nullptr;

    QComboBox* m_cboPresets = nullptr;
    QListWidget* m_lstConvertToFormat = nullptr;
    QButtonGroup* m_resolutionGroup = nullptr;
    QList<QRadioButton*> m_optScreenRes;
    QLineEdit* m_txtScreenRes = nullptr;
    QLineEdit* m_txtPhoneNumber = nullptr;
    QListWidget* m_lstCellCarrier = nullptr;
    QPushButton* m_cmdAddMMSServer = nullptr;
    QPushButton* m_cmdHelp = nullptr;
    QPushButton* m_cmdConvertOnly = nullptr;
    QPushButton* m_cmdEmail = nullptr;
    QPushButton* m_cmdClose = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    QLabel* m_progressLabel = nullptr;
};

} // namespace cq
