#pragma once

#include <QDialog>

class QLineEdit;

namespace cq {

// Adds a cell carrier and its MMS gateway domain as a line of the carrier file.
class frmAddMMSServer : public QDialog {
    Q_OBJECT
public:
    explicit frmAddMMSServer(const QString& carrierListFileSpec, QWidget* parent = nullptr);

    QString addedName() const { return m_addedName; }

public slots:
    void accept() override;

private:
    QString m_carrierListFileSpec;
    QString m_addedName;
    QLineEdit* m_txtCarrierName = nullptr;
    QLineEdit* m_txtMMSServer = nullptr;
};

} // namespace cq
