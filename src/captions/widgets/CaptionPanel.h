#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

class QLabel;
class QMessageBox;
class QPushButton;
class QTableView;

namespace cq {

class CaptionTableModel;

// The "Captions" panel: the message's cues in a table the user corrects in place, "Add" and
// "Delete", and "Make Captions", which makes them anew from the voice. Hidden until shown.
class CaptionPanel : public QWidget {
    Q_OBJECT
public:
    explicit CaptionPanel(CaptionTableModel& model, QWidget* parent = nullptr);
    // An edit still open in the table is committed while QWidget's part closes it, after this
    // part is gone: the model's answers must no longer reach the panel by then.
    ~CaptionPanel() override;

    // Where "Add" puts a new cue: the time the studio is at, or negative for after the last cue.
    std::function<qint64()> currentTimeMs;
    // What "Make Captions" starts; the button stays disabled until there is something to start.
    void setMakeCaptions(std::function<void()> start);
    // What "Cancel" stops while the captions are being made.
    void setCancelMaking(std::function<void()> cancel) { m_cancelMaking = std::move(cancel); }
    // While the captions are being made, "Cancel" stands in for "Make Captions".
    void showMaking(bool making);
    // A line under the table: why an edit was refused, how far making the captions is.
    void showStatus(const QString& text);

    QTableView* table() const { return m_table; }

    // Shows the panel, or hides it.
    void cmdCaptions_Click();
    void cmdAddCaption_Click();
    void cmdDeleteCaption_Click();
    // Cues the user changed are replaced only after a "Replace" in the question box.
    void cmdMakeCaptions_Click();
    void cmdCancelCaptions_Click();

private:
    void buildTable();
    void buildButtons();
    void askBeforeReplacing();

    CaptionTableModel& m_model;
    std::function<void()> m_makeCaptions;
    std::function<void()> m_cancelMaking;
    QTableView* m_table = nullptr;
    QPushButton* m_cmdAddCaption = nullptr;
    QPushButton* m_cmdDeleteCaption = nullptr;
    QPushButton* m_cmdMakeCaptions = nullptr;
    QPushButton* m_cmdCancelCaptions = nullptr;
    QLabel* m_lblStatus = nullptr;
    QPointer<QMessageBox> m_question;
};

} // namespace cq
