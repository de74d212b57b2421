#pragma once

#include "share/CarrierList.h"
#include "share/ConversionCommand.h"
#include "share/widgets/ConvertAndEmailControls.h"
#include "studio/AppPaths.h"

#include <QDialog>
#include <QList>

#include <optional>

namespace cq {

class ConversionJob;
struct JobEnd;
class MailHandOver;
struct MailResult;

// "Convert and Email Clip": converts the rendered clip for a phone or a player and hands the
// result to the mail client, addressed to a phone through its carrier's MMS gateway on request.
// A click starts the conversion and returns; the window shows its progress and can cancel it.
class frmConvertAndEmail : public QDialog {
    Q_OBJECT
public:
    explicit frmConvertAndEmail(const AppPaths& paths, QWidget* parent = nullptr);
    ~frmConvertAndEmail() override;

    // The settings the next conversion would use; frameSize is empty when no size is chosen
    // (or "Other" holds no valid size).
    ConversionSettings conversionSettings() const;
    const QList<Carrier>& carriers() const { return m_carriers; }
    // True from the click that starts a conversion or a hand-over until its result is told.
    bool isConverting() const { return m_work == Work::Converting; }
    bool isBusy() const { return m_work != Work::None; }

    void FillCarrierList();
    void cboPresets_Click(int index);
    void lstConvertToFormat_Click();

public slots:
    void reject() override;

private:
    enum class Work { None, Converting, Mailing };

    void Form_Load();
    void connectControls();
    void connectJobs();
    QString selectedFormat() const;
    void clearResolutionOptions();
    void setWork(Work work);
    void cmdConvertOnly_Click();
    void cmdEmail_Click();
    // The phone's MMS address, empty for no phone; nothing (and the user told why) when the
    // carrier or the number is missing.
    std::optional<QString> phoneRecipient();
    void cmdAddMMSServer_Click();
    void cmdHelp_Click();
    // Starts converting the rendered clip to the selected format (nothing to do for "AVI").
    void ConvertFileToEmail();
    void onConverted(const QString& file);
    void onConversionEnded(const JobEnd& end);
    void onMailFinished(const MailResult& result);
    bool closeIfAsked();
    void showMessage(const QString& text, const QString& detail = QString());

    AppPaths m_paths;
    QList<Carrier> m_carriers;
    ConvertAndEmailControls m_ui;
    ConversionJob* m_job = nullptr;
    MailHandOver* m_mail = nullptr;
    Work m_work = Work::None;
    // Set by "Convert and Email": the converted file goes to this address (empty: the user
    // fills it in); unset, the conversion is only reported.
    std::optional<QString> m_sendTo;
    bool m_closeWhenIdle = false;
};

} // namespace cq
