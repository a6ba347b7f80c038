#pragma once

#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMFileLineEdit;
class QPushButton;
class QSlider;
class QStackedWidget;
class QTabBar;

// The write options panel of the tabs that write ZEB files: content and
// form of the file, and mesh simplification by coarsening (Automatic) or by
// a sketch file (Manual). It composes the OKT_ZEBWRITE_OPTIONS entry and can
// save it to zebscript.dat.
class QRTZEBCore : public QWidget
{
    Q_OBJECT

public:
    QRTZEBCore(QWidget* parent, const char* name);
    ~QRTZEBCore() override;

    // The whole "OKT_ZEBWRITE_OPTIONS=..." entry, or an empty string (after a
    // warning) when the Manual tab lacks its sketch file name.
    QString writeOptions();
    // Puts writeOptions() into the environment of the process and of every
    // translator run later; an empty string leaves the environment alone.
    // False, after a warning and with the environment as it was, when the
    // entry is too long to be given to a program.
    bool putOptions();

signals:
    void setMeshLblVal(const QString& text);
    void setFaceLblVal(const QString& text);

private slots:
    void convertMeshSliderInt(int val);
    void convertFaceSliderInt(int val);
    void toggleCoarsenBox();
    void toggleGeometryOnlyBox();
    void enableCoarsenBox();
    void disableCoarsenBox();
    void selectTab(int id);
    void genScript();

private:
    QGroupBox* createOptionsBox();
    QGroupBox* createMeshBox();
    void createAutoPage();
    void createManualPage();
    void connectControls();
    void setCoarsenControlsEnabled(bool enabled);
    QString coarsenForm() const;

    QComboBox* invarCB = nullptr;
    QComboBox* unitsCB = nullptr;
    QComboBox* formatCB = nullptr;
    QComboBox* precisionCB = nullptr;
    QComboBox* sparseModesCB = nullptr;
    QCheckBox* geometryOnlyBox = nullptr;
    QCheckBox* stripFaceBox = nullptr;
    QCheckBox* coarsenBox = nullptr;
    QCheckBox* preserveModesBox = nullptr;
    QLabel* meshLbl = nullptr;
    QSlider* meshResSL = nullptr;
    QLabel* faceLbl = nullptr;
    QSlider* faceSmoothSL = nullptr;
    QLineEdit* retainedNodesLE = nullptr;
    QCheckBox* colinearBox = nullptr;
    QString faceVal;
    QString meshVal;
    QStackedWidget* widgetStack = nullptr;
    QTabBar* tabBar = nullptr;
    QWidget* autoPage = nullptr;
    QWidget* manualPage = nullptr;
    bool coarsenOn = false;
    QPushButton* scriptPB = nullptr;
    QMFileLineEdit* sketchCombo = nullptr;
};
