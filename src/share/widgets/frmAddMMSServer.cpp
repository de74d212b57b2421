#include "share/widgets/frmAddMMSServer.h"

#include "share/CarrierList.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace cq {

frmAddMMSServer::frmAddMMSServer(const QString& carrierListFileSpec, QWidget* parent)
    : QDialog(parent), m_carrierListFileSpec(carrierListFileSpec) {
    setObjectName(QStringLiteral("frmAddMMSServer"));
    setWindowTitle(QStringLiteral("Add MMS Server"));
    setModal(true);

    auto* outer = new QVBoxLayout(this);
    auto* intro =
        new QLabel(QStringLiteral("Type the cell carrier's name and the domain of its MMS "
                                  "server. A message to a phone goes to "
                                  "NUMBER@domain."),
                   this);
    intro->setWordWrap(true);
    outer->addWidget(intro);

    auto* form = new QFormLayout;
    m_txtCarrierName = new QLineEdit(this);
    m_txtCarrierName->setObjectName(QStringLiteral("txtCarrierName"));
    m_txtCarrierName->setToolTip(QStringLiteral("The carrier's name as the list shows it."));
    m_txtMMSServer = new QLineEdit(this);
    m_txtMMSServer->setObjectName(QStringLiteral("txtMMSServer"));
    m_txtMMSServer->setPlaceholderText(QStringLiteral("mms.carrier.example"));
    m_txtMMSServer->setToolTip(QStringLiteral("The domain of the carrier's MMS server."));
    form->addRow(QStringLiteral("Cell Carrier"), m_txtCarrierName);
    form->addRow(QStringLiteral("MMS Server"), m_txtMMSServer);
    outer->addLayout(form);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* add = buttons->addButton(QStringLiteral("Add"), QDialogButtonBox::AcceptRole);
    add->setObjectName(QStringLiteral("cmdOK"));
    add->setToolTip(QStringLiteral("Add this carrier to the list."));
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    cancel->setToolTip(QStringLiteral("Close without adding a carrier."));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmAddMMSServer::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmAddMMSServer::reject);
    outer->addWidget(buttons);
}

void frmAddMMSServer::accept() {
    const QString name = m_txtCarrierName->text().trimmed();
    const QString error = AddCarrierToFile(m_carrierListFileSpec, name, m_txtMMSServer->text());
    if (!error.isEmpty()) {
        QMessageBox::warning(this, windowTitle(), error);
        return;
    }
    m_addedName = name;
    QDialog::accept();
}

} // namespace cq
