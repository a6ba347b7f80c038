#pragma once

#include <QWidget>

class QPushButton;

// The tab "ZEB->ZEB Optimizer" (being built).
class ZEBZEBOpt : public QWidget
{
    Q_OBJECT

public:
    ZEBZEBOpt(QWidget* parent, const char* name);

public slots:
    void selected();
    void optimize();

private:
    QPushButton* optimizePB = nullptr;
};
