#include "text/widgets/TextFrame.h"

#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"
#include "platform/widgets/NamedButton.h"
#include "text/TextListFile.h"
#include "text/widgets/SpeechVoice.h"
#include "text/widgets/frmAddMultipleLinesOfText.h"
#include "text/widgets/frmSendText.h"

#include <QButtonGroup>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace cq {

TextFrame::TextFrame(SpeechVoice* voice, const QString& textListFileSpec,
                     const QStringList& entries, QWidget* parent)
    : QFrame(parent), m_voice(voice), m_fileSpec(textListFileSpec) {
    setObjectName(QStringLiteral("fraText"));
    setAccessibleName(QStringLiteral("Texts"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    // Two rows, so that the captions stay whole in the narrow text tab.
    auto* optionRow = new QGridLayout;
    m_options = new QButtonGroup(this);
    const QString tips[kTextOptionCount] = {QStringLiteral("Show a clicked text on the screen"),
                                            QStringLiteral("Speak a clicked text aloud"),
                                            QStringLiteral("Show a clicked text and speak it")};
    for (int i = 0; i < kTextOptionCount; ++i) {
        m_optTextAndOrSpeech[i] = new QRadioButton(TextOptionCaption(TextOption(i)), this);
        m_optTextAndOrSpeech[i]->setObjectName(QStringLiteral("optTextAndOrSpeech_%1").arg(i));
        m_optTextAndOrSpeech[i]->setToolTip(tips[i]);
        m_options->addButton(m_optTextAndOrSpeech[i], i);
        optionRow->addWidget(m_optTextAndOrSpeech[i], i / 2, i % 2);
    }
    m_optTextAndOrSpeech[int(TextOption::Text)]->setChecked(true);
    m_cmdBigText = NamedButton(QStringLiteral("+"), QStringLiteral("cmdBigText"),
                               QStringLiteral("View Files in larger or smaller text"), this);
    m_cmdBigText->setAccessibleName(QStringLiteral("Larger or smaller text"));
    m_cmdBigText->setFixedWidth(m_cmdBigText->sizeHint().height() + 4);
    optionRow->addWidget(m_cmdBigText, 1, 1, Qt::AlignRight);
    layout->addLayout(optionRow);

    m_lstText = new QListWidget(this);
    m_lstText->setObjectName(QStringLiteral("lstText"));
    m_lstText->setAccessibleName(QStringLiteral("Texts"));
    m_lstText->setToolTip(QStringLiteral(
        "Click to show or speak a text, double-click to edit it, Delete to remove it"));
    m_lstText->setAccessibleDescription(m_lstText->toolTip());
    m_lstText->installEventFilter(this);
    layout->addWidget(m_lstText, 1);

    m_cmdAddMultiLinesOfText =
        NamedButton(QStringLiteral("Edit All Texts..."), QStringLiteral("cmdAddMultiLinesOfText"),
                    QStringLiteral("Edit the whole list, one text a line"), this);
    layout->addWidget(m_cmdAddMultiLinesOfText);

    QFont font = m_lstText->font();
    font.setPointSizeF(m_listPointSize);
    m_lstText->setFont(font);
    setEntries(entries);

    connect(m_lstText, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { emit textClicked(item->text(), selectedOption()); });
    connect(m_lstText, &QListWidget::itemDoubleClicked, this, [this] { lstText_DblClick(); });
    connect(m_cmdAddMultiLinesOfText, &QPushButton::clicked, this,
            &TextFrame::cmdAddMultiLinesOfText_Click);
    connect(m_cmdBigText, &QPushButton::clicked, this, &TextFrame::cmdBigText_Click);
}

QStringList TextFrame::entries() const {
    QStringList list;
    for (int i = 0; i < m_lstText->count(); ++i)
        list.append(m_lstText->item(i)->text());
    return list;
}

TextOption TextFrame::selectedOption() const {
    const int id = m_options->checkedId();
    return id < 0 ? TextOption::Text : TextOption(id);
}

void TextFrame::setEntries(const QStringList& entries) {
    m_lstText->clear();
    m_lstText->addItems(entries);
}

void TextFrame::saveList() {
    if (!SaveTextList(entries(), m_fileSpec))
        QMessageBox::warning(
            this, QStringLiteral("Clipquill"),
            QStringLiteral("The text list could not be written to \"%1\".").arg(m_fileSpec));
    emit listChanged();
}

void TextFrame::lstText_DblClick() {
    QListWidgetItem* item = m_lstText->currentItem();
    if (!item)
        return;
    frmSendText dialog(item->text(), m_voice, window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString text = RemoveLineBreaks(dialog.typedText());
    item->setText(text);
    saveList();
    emit textEdited(text);
}

void TextFrame::lstText_KeyDown(int key) {
    if (key != Qt::Key_Delete)
        return;
    const int row = m_lstText->currentRow();
    if (row < 0 || !m_lstText->currentItem() || !m_lstText->currentItem()->isSelected())
        return;
    delete m_lstText->takeItem(row);
    saveList();
}

void TextFrame::cmdAddMultiLinesOfText_Click() {
    QString text;
    if (QFileInfo::exists(m_fileSpec))
        text = DecodeTextListForEditing(ReadFileToBytes(m_fileSpec));
    frmAddMultipleLinesOfText editor(m_fileSpec, text, window());
    if (editor.exec() != QDialog::Accepted)
        return;
    setEntries(LoadTextList(m_fileSpec));
    emit listChanged();
}

void TextFrame::cmdBigText_Click() {
    const bool small = m_listPointSize == kSmallListPointSize;
    m_listPointSize = small ? kLargeListPointSize : kSmallListPointSize;
    m_cmdBigText->setText(small ? QStringLiteral("-") : QStringLiteral("+"));
    QFont font = m_lstText->font();
    font.setPointSizeF(m_listPointSize);
    m_lstText->setFont(font);
    emit listPointSizeChanged(m_listPointSize);
}

bool TextFrame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_lstText && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Delete) {
            lstText_KeyDown(key->key());
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace cq
