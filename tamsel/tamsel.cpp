#include "tamsel.h"

#include "pictures.h"
#include "platform/commandline.h"
#include "qrtzeblator.h"
#include "zeb.h"
#include "zebbrowser.h"
#include "zebmtxlator.h"
#include "zebzebopt.h"

#include <QApplication>
#include <QBoxLayout>
#include <QMessageBox>
#include <QMetaObject>
#include <QPixmap>
#include <QPushButton>
#include <QTabWidget>

#include <cstdlib>

namespace
{

QString environmentValue(const char* name)
{
    return QString::fromLocal8Bit(std::getenv(name));
}

} // namespace

Tamsel::Tamsel(QWidget* parent, const char* name, bool modal, Qt::WindowFlags f)
    : QDialog(parent, f)
{
    setObjectName(QString::fromLatin1(name));
    setModal(modal);
    tabs = new QTabWidget(this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs, 1);

    environmentOk = checkEnvironment();
    if (!environmentOk) {
        QMessageBox::critical(this, "Environment Problems",
                              "The ZEB2MTX or QRT2ZEB translators are not installed.\n"
                              "You must also set the OKT_QRT2ZEB and OKT_ZEB2MTX environment "
                              "variables",
                              QMessageBox::Ok);
        return;
    }
    setOkButton("Quit");
    setWindowTitle(environmentValue("QRT_ONDREL_NAME"));
    createTabs();
    // Connected last, so that no start button becomes default at start-up.
    connect(this, &Tamsel::selected, this, &Tamsel::changeDefaultButton);
}

Tamsel::~Tamsel()
{
    ZEB_Terminate();
}

bool Tamsel::checkEnvironment()
{
    const QString zeb2mtx = environmentValue("OKT_ZEB2MTX");
    const QString qrt2zeb = environmentValue("OKT_QRT2ZEB");
    if (zeb2mtx.isEmpty() || qrt2zeb.isEmpty())
        return false;
    // Found as the run will find it: a bare name on PATH, never in the
    // working directory; a directory has its x bit too, but is no translator.
    return !platform::findProgram(zeb2mtx.toLocal8Bit().toStdString()).empty() &&
           !platform::findProgram(qrt2zeb.toLocal8Bit().toStdString()).empty();
}

void Tamsel::setOkButton(const QString& text)
{
    quitButton = new QPushButton(text, this);
    quitButton->setDefault(true);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(quitButton);
    static_cast<QBoxLayout*>(layout())->addLayout(row);
    connect(quitButton, &QPushButton::clicked, this, [this] {
        emit applyButtonPressed();
        accept();
    });
}

void Tamsel::addTab(QWidget* tab, const QString& caption)
{
    tabs->addTab(tab, caption);
    tabEntries.append({caption, tab});
}

void Tamsel::createTabs()
{
    zebBrowser = new ZEBBrowser(this, "ZEBBrowser");
    addTab(zebBrowser, "ZEB Browser");
    zebMtxLator = new ZEBMTXLator(this, "ZEBMTXLator");
    addTab(zebMtxLator, "ZEB->MTX Translator");
    qrtZebLator = new QRTZEBLator(this, "QRTZEBLator");
    addTab(qrtZebLator, "QRT->ZEB Translator");
    zebZebOpt = new ZEBZEBOpt(this, "ZEBZEBOpt");
    addTab(zebZebOpt, "ZEB->ZEB Optimizer");
    connect(tabs, &QTabWidget::currentChanged, this,
            [this](int index) { emit selected(tabs->tabText(index)); });
}

void Tamsel::changeDefaultButton(const QString& caption)
{
    for (const TabEntry& entry : tabEntries) {
        if (entry.caption == caption) {
            const bool called = QMetaObject::invokeMethod(entry.tab, "selected");
            Q_ASSERT_X(called, "changeDefaultButton", "a tab without selected()");
            Q_UNUSED(called);
            return;
        }
    }
}

int Tamsel::runProgram()
{
    Tamsel dialog(nullptr, nullptr, false, {});
    if (!dialog.environmentOk)
        return 0;
    const QPixmap icon = pictures::windowIcon();
    dialog.setWindowIcon(icon);
    dialog.setWindowIconText("Tamsel");
    QObject::connect(&dialog, &Tamsel::applyButtonPressed, qApp, &QCoreApplication::quit);
    // Closing the dialog ends the program even while other windows are open.
    QObject::connect(&dialog, &QDialog::finished, qApp, [] { QCoreApplication::exit(0); });
    dialog.resize(850, 420);
    dialog.show();
    return QApplication::exec();
}
