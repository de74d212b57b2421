#pragma once

#include "text/TextOption.h"

#include <QFrame>
#include <QPointer>
#include <QStringList>

class QButtonGroup;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace cq {

class SpeechVoice;

// The prepared texts of the text tab: click one to show and/or speak it, double-click to edit it,
// Delete to remove it, or edit the whole list at once. Every change is saved to the list file.
class TextFrame : public QFrame {
    Q_OBJECT
public:
    static constexpr double kSmallListPointSize = 8.25;
    static constexpr double kLargeListPointSize = 10.0;

    TextFrame(SpeechVoice* voice, const QString& textListFileSpec, const QStringList& entries,
              QWidget* parent = nullptr);

    QStringList entries() const;
    TextOption selectedOption() const;
    QListWidget* lstText() const { return m_lstText; }

    void lstText_DblClick();
    void lstText_KeyDown(int key);
    void cmdAddMultiLinesOfText_Click();
    void cmdBigText_Click();

signals:
    // A click on an entry: its text and the selected option.
    void textClicked(const QString& text, cq::TextOption option);
    // The lists' font size changed; the file lists follow the text list.
    void listPointSizeChanged(double pointSize);
    void listChanged();
    // An entry was edited into this text, which is then the text being shown.
    void textEdited(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void saveList();
    void setEntries(const QStringList& entries);

    QPointer<SpeechVoice> m_voice;
    QString m_fileSpec;
    QListWidget* m_lstText = nullptr;
    QButtonGroup* m_options = nullptr;
    QRadioButton* m_optTextAndOrSpeech[kTextOptionCount] = {};
    QPushButton* m_cmdAddMultiLinesOfText = nullptr;
    QPushButton* m_cmdBigText = nullptr;
    double m_listPointSize = kSmallListPointSize;
};

} // namespace cq
