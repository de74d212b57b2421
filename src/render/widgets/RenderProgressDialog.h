#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace cq {

// Shows how far a render is, with a Cancel button; closes itself when told the render ended.
class RenderProgressDialog : public QDialog {
    Q_OBJECT
public:
    explicit RenderProgressDialog(QWidget* parent = nullptr);

    void setPercent(int percent);
    void setStatus(const QString& text);
    int percent() const;

signals:
    void cancelRequested();

protected:
    void reject() override; // Escape and the window's close button cancel too

private:
    QLabel* m_status = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_cancel = nullptr;
};

} // namespace cq
