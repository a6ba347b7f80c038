#pragma once

#include <QDialog>
#include <QList>

class QPushButton;
class QTabWidget;
class ZEBBrowser;
class ZEBMTXLator;
class QRTZEBLator;
class ZEBZEBOpt;

// The one top-level window: a tab dialog with the working tabs and a single
// button, "Quit". It refuses to open when the translators cannot be found.
class Tamsel : public QDialog
{
    Q_OBJECT

public:
    Tamsel(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
           Qt::WindowFlags f = {});
    ~Tamsel() override;

    // The program after the application object exists: the dialog, its
    // refusal or its event loop. Returns the program's result.
    static int runProgram();

    bool checkEnvironment();

    bool environmentOk = false;
    ZEBBrowser* zebBrowser = nullptr;
    ZEBMTXLator* zebMtxLator = nullptr;
    QRTZEBLator* qrtZebLator = nullptr;
    ZEBZEBOpt* zebZebOpt = nullptr;

    QTabWidget* tabWidget() const { return tabs; }
    QPushButton* okButton() const { return quitButton; }

signals:
    void applyButtonPressed();
    void selected(const QString& caption);

private slots:
    void changeDefaultButton(const QString& caption);

private:
    void setOkButton(const QString& text);
    void addTab(QWidget* tab, const QString& caption);
    void createTabs();

    QTabWidget* tabs = nullptr;
    QPushButton* quitButton = nullptr;

    struct TabEntry {
        QString caption;
        QWidget* tab;
    };
    QList<TabEntry> tabEntries;
};
