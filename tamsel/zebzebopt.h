#pragma once

#include <QString>
#include <QWidget>

class BodyIndexField;
class QBoxLayout;
class QLineEdit;
class QMFileLineEdit;
class QMenu;
class QPushButton;
class QRTZEBCore;

// The tab "ZEB->ZEB Optimizer": ZEB2MTX rewrites a ZEB file or one body of
// an HX DB file into a new ZEB or HX DB file under the write options of the
// tab's own panel, which reach it through OKT_ZEBWRITE_OPTIONS.
class ZEBZEBOpt : public QWidget
{
    Q_OBJECT

public:
    ZEBZEBOpt(QWidget* parent, const char* name);

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void selected();
    void optimize();
    void checkCDB();
    void selectIndexFromCDB();

private:
    QBoxLayout* createFileRow();
    bool outputMayBeWritten(const QString& output);

    QMFileLineEdit* inputFile = nullptr;
    QMFileLineEdit* output = nullptr;
    QRTZEBCore* core = nullptr;
    QPushButton* optimizePB = nullptr;
    QLineEdit* indexLE = nullptr;
    QMenu* indexMenu = nullptr;
    BodyIndexField* bodyIndex = nullptr;
};

// The final output name: a database suffix in any case becomes ".MASTER",
// a ZEB suffix in any case stays, any other name gains ".zeb".
QString fixOutputName(const QString& name);
