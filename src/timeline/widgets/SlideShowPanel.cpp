#include "timeline/widgets/SlideShowPanel.h"

#include "timeline/SlideShow.h"
#include "timeline/SlideShowPicker.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>

namespace cq {

SlideShowPanel::SlideShowPanel(SlideShow& show, QWidget* parent) : QWidget(parent), m_show(show) {
    setObjectName(QStringLiteral("SlideShowPanel"));
    m_cmdSlideShow = new QPushButton(QStringLiteral("Start Slide Show"), this);
    m_cmdSlideShow->setObjectName(QStringLiteral("cmdSlideShow"));
    m_chkRandom = new QCheckBox(QStringLiteral("&Random"), this);
    m_chkRandom->setObjectName(QStringLiteral("chkRandom"));
    m_chkRandom->setToolTip(QStringLiteral("Play files in a random order."));
    m_cboSlideShowPictureWait = new QComboBox(this);
    m_cboSlideShowPictureWait->setObjectName(QStringLiteral("cboSlideShowPictureWait"));
    m_cboSlideShowPictureWait->setEditable(true);
    const QString waitTip = QStringLiteral(
        "Seconds to view each picture in slide show before moving on to the next one.");
    m_cboSlideShowPictureWait->setToolTip(waitTip);
    m_cboSlideShowPictureWait->setAccessibleName(QStringLiteral("Seconds per picture"));
    m_cboSlideShowPictureWait->setAccessibleDescription(waitTip);
    LoadcboSlideShowPictureWait();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_cmdSlideShow);
    layout->addWidget(m_chkRandom);
    layout->addWidget(m_cboSlideShowPictureWait);

    // The show reads both before every step; editing has no other effect.
    connect(m_chkRandom, &QCheckBox::toggled, &m_show, &SlideShow::setRandom);
    connect(m_cboSlideShowPictureWait, &QComboBox::currentTextChanged, &m_show,
            &SlideShow::setWaitText);
    connect(m_cmdSlideShow, &QPushButton::clicked, &m_show, &SlideShow::cmdSlideShow_Click);
    connect(&m_show, &SlideShow::runningChanged, this, &SlideShowPanel::onRunningChanged);
    m_show.setWaitText(m_cboSlideShowPictureWait->currentText());
    m_show.setRandom(m_chkRandom->isChecked());
}

void SlideShowPanel::LoadcboSlideShowPictureWait() {
    m_cboSlideShowPictureWait->addItems(SlideShowWaits());
    m_cboSlideShowPictureWait->setCurrentText(DefaultSlideShowWait());
}

void SlideShowPanel::onRunningChanged(bool running) {
    // The caption stays; the pressed look tells that a second click stops the show.
    m_cmdSlideShow->setDown(running);
}

} // namespace cq
