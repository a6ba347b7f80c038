#pragma once

#include "translatorcommand.h"

#include <QWidget>

class BodyIndexField;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QMFileLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;

// The tab "ZEB->MTX Translator": a ZEB file or one body of an HX DB file
// becomes a matrix file through ZEB2MTX, in the units of the model and with
// the chosen nodes and modes.
class ZEBMTXLator : public QWidget
{
    Q_OBJECT

public:
    ZEBMTXLator(QWidget* parent, const char* name);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void translate();
    void selected();

private slots:
    void checkCDB();
    void selectIndexFromCDB();

private:
    QBoxLayout* createFileRow();
    QGroupBox* createUnitsBox(const QFont& bold);
    QGroupBox* createNodesModesBox(const QFont& bold);
    QRadioButton* addIncludeExclude(QGroupBox* box, int row, const QLineEdit* list,
                                    const char* what);
    QLineEdit* addListRow(QGroupBox* box, QGridLayout* grid, int row, const char* label,
                          const char* name, const char* tip);
    TranslatorCommand commandLine(const QString& output) const;
    bool outputMayBeWritten(const QString& output);

    QMFileLineEdit* inputCombo = nullptr;
    QMFileLineEdit* outputLE = nullptr;
    QComboBox* lengthCB = nullptr;
    QComboBox* timeCB = nullptr;
    QComboBox* massCB = nullptr;
    QComboBox* forceCB = nullptr;
    QRadioButton* nodesIncludeRB = nullptr;
    QRadioButton* modesIncludeRB = nullptr;
    QLineEdit* nodeIDs = nullptr;
    QLineEdit* modeList = nullptr;
    QCheckBox* fastInvarCB = nullptr;
    QPushButton* translatePB = nullptr;
    QLineEdit* indexLE = nullptr;
    QMenu* indexMenu = nullptr;
    BodyIndexField* bodyIndex = nullptr;
};
