#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace cq {

class SlideShow;

// cmdSlideShow, chkRandom and cboSlideShowPictureWait.
class SlideShowPanel : public QWidget {
    Q_OBJECT
public:
    explicit SlideShowPanel(SlideShow& show, QWidget* parent = nullptr);

private:
    void LoadcboSlideShowPictureWait();
    void onRunningChanged(bool running);

    SlideShow& m_show;
    QPushButton* m_cmdSlideShow;
    QCheckBox* m_chkRandom;
    QComboBox* m_cboSlideShowPictureWait;
};

} // namespace cq
