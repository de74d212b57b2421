#include "render/widgets/RenderProgressDialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace cq {

RenderProgressDialog::RenderProgressDialog(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmRenderProgress"));
    setWindowTitle(QStringLiteral("Render"));
    auto* layout = new QVBoxLayout(this);
    m_status = new QLabel(QStringLiteral("Preparing the render"), this);
    m_status->setObjectName(QStringLiteral("lblRenderStatus"));
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("prgRender"));
    m_bar->setRange(0, 100);
    m_bar->setValue(0);
    m_bar->setFormat(QStringLiteral("%p%"));
    m_bar->setAccessibleName(QStringLiteral("Render progress"));
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cmdCancelRender"));
    m_cancel->setToolTip(
        QStringLiteral("Stop the render; the last rendered video stays as it was"));
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel, 0, Qt::AlignRight);
    connect(m_cancel, &QPushButton::clicked, this, &RenderProgressDialog::cancelRequested);
    setMinimumWidth(360);
}

void RenderProgressDialog::setPercent(int percent) {
    m_bar->setValue(percent);
}

int RenderProgressDialog::percent() const {
    return m_bar->value();
}

void RenderProgressDialog::setStatus(const QString& text) {
    m_status->setText(text);
}

void RenderProgressDialog::reject() {
    emit cancelRequested();
}

} // namespace cq
