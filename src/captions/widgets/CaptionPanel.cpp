#include "captions/widgets/CaptionPanel.h"

#include "captions/CaptionTableModel.h"
#include "platform/widgets/NamedButton.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace cq {

namespace {

const QString kTitle = QStringLiteral("Captions");

void describe(QWidget* widget, const QString& name, const QString& description) {
    widget->setAccessibleName(name);
    widget->setToolTip(description);
    widget->setAccessibleDescription(description);
}

} // namespace

CaptionPanel::CaptionPanel(CaptionTableModel& model, QWidget* parent)
    : QWidget(parent), m_model(model) {
    setObjectName(QStringLiteral("CaptionPanel"));
    describe(this, kTitle, QStringLiteral("The captions of the message"));
    buildTable();
    buildButtons();
    m_lblStatus = new QLabel(this);
    m_lblStatus->setObjectName(QStringLiteral("lblCaptionsStatus"));
    m_lblStatus->setWordWrap(true);
    m_lblStatus->setAccessibleName(QStringLiteral("Captions status"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdAddCaption);
    buttons->addWidget(m_cmdDeleteCaption);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdMakeCaptions);
    buttons->addWidget(m_cmdCancelCaptions);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_lblStatus);

    connect(&m_model, &CaptionTableModel::editRefused, this, &CaptionPanel::showStatus);
    connect(&m_model, &CaptionTableModel::cuesChanged, this, [this] { showStatus({}); });
    setMinimumWidth(320);
    hide();
}

CaptionPanel::~CaptionPanel() {
    m_model.disconnect(this);
}

void CaptionPanel::buildTable() {
    m_table = new QTableView(this);
    m_table->setObjectName(QStringLiteral("tblCaptions"));
    describe(m_table, kTitle,
             QStringLiteral("Each caption's start, end and text; double-click a cell or press F2 "
                            "to correct it, Delete removes the caption"));
    m_table->setModel(&m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    // A few captions in view, even when the display place above takes most of the column.
    m_table->setMinimumHeight(m_table->verticalHeader()->defaultSectionSize() * 5);
    m_table->setColumnWidth(CaptionTableModel::Start, 80);
    m_table->setColumnWidth(CaptionTableModel::End, 80);
    m_table->horizontalHeader()->setSectionResizeMode(CaptionTableModel::Text,
                                                      QHeaderView::Stretch);
    // Delete removes the caption only while no cell is being edited: the editor has the focus.
    auto* remove = new QAction(QStringLiteral("Delete Caption"), m_table);
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    connect(remove, &QAction::triggered, this, &CaptionPanel::cmdDeleteCaption_Click);
    m_table->addAction(remove);
}

void CaptionPanel::buildButtons() {
    m_cmdAddCaption =
        NamedButton(QStringLiteral("Add"), QStringLiteral("cmdAddCaption"),
                    QStringLiteral("Add a caption at the selected event's time, or after the "
                                   "last caption"),
                    this);
    m_cmdDeleteCaption = NamedButton(QStringLiteral("Delete"), QStringLiteral("cmdDeleteCaption"),
                                     QStringLiteral("Remove the selected caption"), this);
    m_cmdMakeCaptions =
        NamedButton(QStringLiteral("Make Captions"), QStringLiteral("cmdMakeCaptions"),
                    QStringLiteral("Make the captions from the recorded voice (English; a draft "
                                   "to correct)"),
                    this);
    m_cmdCancelCaptions =
        NamedButton(QStringLiteral("Cancel"), QStringLiteral("cmdCancelCaptions"),
                    QStringLiteral("Stop making the captions; those there are stay"), this);
    for (QPushButton* button :
         {m_cmdAddCaption, m_cmdDeleteCaption, m_cmdMakeCaptions, m_cmdCancelCaptions})
        describe(button, button->text(), button->toolTip());
    m_cmdMakeCaptions->setEnabled(false);
    m_cmdCancelCaptions->hide();
    connect(m_cmdCancelCaptions, &QPushButton::clicked, this,
            &CaptionPanel::cmdCancelCaptions_Click);
    connect(m_cmdAddCaption, &QPushButton::clicked, this, &CaptionPanel::cmdAddCaption_Click);
    connect(m_cmdDeleteCaption, &QPushButton::clicked, this, &CaptionPanel::cmdDeleteCaption_Click);
    connect(m_cmdMakeCaptions, &QPushButton::clicked, this, &CaptionPanel::cmdMakeCaptions_Click);
}

void CaptionPanel::setMakeCaptions(std::function<void()> start) {
    m_makeCaptions = std::move(start);
    m_cmdMakeCaptions->setEnabled(bool(m_makeCaptions));
}

void CaptionPanel::showMaking(bool making) {
    m_cmdMakeCaptions->setVisible(!making);
    m_cmdCancelCaptions->setVisible(making);
}

void CaptionPanel::cmdCancelCaptions_Click() {
    if (m_cancelMaking)
        m_cancelMaking();
}

void CaptionPanel::showStatus(const QString& text) {
    m_lblStatus->setText(text);
}

void CaptionPanel::cmdCaptions_Click() {
    if (isHidden()) {
        show();
        raise();
    } else {
        hide();
    }
}

void CaptionPanel::cmdAddCaption_Click() {
    const int row = m_model.addCue(currentTimeMs ? currentTimeMs() : -1);
    const QModelIndex text = m_model.index(row, CaptionTableModel::Text);
    m_table->setCurrentIndex(text);
    m_table->scrollTo(text);
    m_table->setFocus();
    // The new caption's text is typed at once.
    m_table->edit(text);
}

void CaptionPanel::cmdDeleteCaption_Click() {
    const QModelIndex current = m_table->currentIndex();
    if (!current.isValid())
        return;
    const int row = current.row();
    m_model.removeCue(row);
    if (m_model.rowCount() > 0)
        m_table->setCurrentIndex(
            m_model.index(qMin(row, m_model.rowCount() - 1), current.column()));
}

void CaptionPanel::cmdMakeCaptions_Click() {
    if (!m_makeCaptions)
        return;
    if (m_model.isEditedByUser() && m_model.rowCount() > 0)
        askBeforeReplacing();
    else
        m_makeCaptions();
}

void CaptionPanel::askBeforeReplacing() {
    // A box that was answered is only deleted later; a new question needs a new box.
    if (m_question && m_question->isVisible()) {
        m_question->raise();
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Question, kTitle,
                                QStringLiteral("The captions were changed by hand. Make them "
                                               "anew from the voice and lose those changes?"),
                                QMessageBox::NoButton, this);
    box->setObjectName(QStringLiteral("replaceCaptionsQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* replace = box->addButton(QStringLiteral("Replace"), QMessageBox::AcceptRole);
    replace->setObjectName(QStringLiteral("Replace"));
    describe(replace, replace->text(), QStringLiteral("Make the captions anew from the voice"));
    QPushButton* keep = box->addButton(QStringLiteral("Keep"), QMessageBox::RejectRole);
    keep->setObjectName(QStringLiteral("Keep"));
    describe(keep, keep->text(), QStringLiteral("Keep the captions as they are"));
    box->setDefaultButton(keep);
    // The window goes on while the box is open; the answer carries on from there.
    connect(box, &QMessageBox::finished, this, [this, box, replace] {
        if (box->clickedButton() == replace && m_makeCaptions)
            m_makeCaptions();
    });
    m_question = box;
    box->open();
}

} // namespace cq
