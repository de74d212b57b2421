#pragma once

#include <QList>

class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QDialog;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QWidget;

namespace cq {

// The controls of "Convert and Email Clip", laid out in their window, each with its object name,
// caption and tooltip. The window fills the lists and wires the controls to its handlers.
struct ConvertAndEmailControls {
    static constexpr int kOtherOption = 5;

    void setupUi(QDialog* dialog);

    QComboBox* cboPresets = nullptr;
    QListWidget* lstConvertToFormat = nullptr;
    QButtonGroup* resolutionGroup = nullptr;
    QList<QRadioButton*> optScreenRes;
    QLineEdit* txtScreenRes = nullptr;
    QLineEdit* txtPhoneNumber = nullptr;
    QListWidget* lstCellCarrier = nullptr;
    QPushButton* cmdAddMMSServer = nullptr;
    QPushButton* cmdHelp = nullptr;
    QPushButton* cmdConvertOnly = nullptr;
    QPushButton* cmdEmail = nullptr;
    QPushButton* cmdClose = nullptr;
    QLabel* progressLabel = nullptr;
    QProgressBar* progress = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    static QLabel* heading(QWidget* parent);
    QGroupBox* convertBox(QWidget* parent);
    void addPresetChoice(QGroupBox* box, QGridLayout* grid);
    void addFormatChoice(QGroupBox* box, QGridLayout* grid);
    QGroupBox* resolutionFrame(QWidget* parent);
    QGroupBox* sendBox(QWidget* parent);
    void addPhoneNumber(QGroupBox* box, QGridLayout* grid);
    void addCarrierChoice(QGroupBox* box, QGridLayout* grid);
    void addCarrierButtons(QGroupBox* box, QGridLayout* grid);
    QBoxLayout* progressRow(QWidget* parent);
    QBoxLayout* buttonRow(QWidget* parent);
};

} // namespace cq
