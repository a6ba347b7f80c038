#pragma once

#include <QWidget>

class QPushButton;

// The tab "ZEB Browser" (being built).
class ZEBBrowser : public QWidget
{
    Q_OBJECT

public:
    ZEBBrowser(QWidget* parent, const char* name);

public slots:
    void selected();

private:
    QPushButton* browseBtn = nullptr;
};
