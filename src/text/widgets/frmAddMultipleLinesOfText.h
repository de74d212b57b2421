#pragma once

#include <QString>

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace cq {

// "Add Multiple Lines Of Text": the whole text list in one box, one entry a line. OK writes the
// text to the list file as typed (blank lines included; reading skips them).
class frmAddMultipleLinesOfText : public QDialog {
    Q_OBJECT
public:
    // text: the current list, entries separated by CR LF.
    frmAddMultipleLinesOfText(const QString& textListFileSpec, const QString& text,
                              QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void cmdOK_Click();

    QString m_fileSpec;
    QPlainTextEdit* m_txtMultipleLinesOfText = nullptr;
    QPushButton* m_cmdOK = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    bool m_centred = false;
};

} // namespace cq
