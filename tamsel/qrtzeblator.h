#pragma once

#include <QWidget>

class QMFileLineEdit;
class QPushButton;
class QRTZEBCore;

// The tab "QRT->ZEB Translator": runs QRT2ZEB on a QRT file, with the
// write options of its panel in OKT_ZEBWRITE_OPTIONS.
class QRTZEBLator : public QWidget
{
    Q_OBJECT

public:
    QRTZEBLator(QWidget* parent, const char* name);

public slots:
    void selected();
    void translate();

private:
    QMFileLineEdit* inputFile = nullptr;
    QRTZEBCore* core = nullptr;
    QPushButton* translatePB = nullptr;
};
