// The QRT translator tab, the whole road: panel, environment, batch file,
// console, the stand-in translator and the ZEB file it writes.
#include "qrtzeblator.h"

#include "qrtroad_helpers.h"
#include "qrtzebcore.h"
#include "scratchdir.h"
#include "standins.h"

#include <QDialog>
#include <QDir>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace
{

const QString defaults = " fast_invar      strip_face ";
const QString noSketch = "Missing Sketch File: You must supply a sketch filename. [OK]";
const QString missingInput = "Missing Input File: Please supply an input QRT file. [OK]";
const QString problems = "Translation Problems: Translating QRT to ZEB problems.\nCheck your "
                         "environment, permissions. [OK]";

// The tab in a dialog whose default button is "Quit", as in the tool dialog.
struct Host {
    QDialog dialog;
    QRTZEBLator* tab = new QRTZEBLator(&dialog, "QRTZEBLator");
    QPushButton* quit = new QPushButton("Quit", &dialog);
    QWidget* core = tab->findChild<QRTZEBCore*>("QRTZEBLator_Core");
    QPushButton* start = widget<QPushButton>(tab, "Begin Translatiion");
    Host()
    {
        (new QVBoxLayout(&dialog))->addWidget(tab);
        dialog.layout()->addWidget(quit);
        quit->setDefault(true);
    }
    void translate(const QString& input)
    {
        widget<QLineEdit>(tab, "input")->setText(input);
        start->click();
    }
};

QString sample()
{
    return Standins::examplesDir() + "/bracket.out";
}

} // namespace

class TestQRTZEBLator : public QObject
{
    Q_OBJECT

private slots:
    void enterStartsOnceSelected();
    void road_data();
    void road();
};

void TestQRTZEBLator::enterStartsOnceSelected()
{
    ScratchDir dir;
    Standins standins(dir.path());
    DialogAnswerer answers;
    Host host;
    widget<QLineEdit>(host.tab, "input")->setText(sample());
    host.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host.dialog));
    QVERIFY(!host.start->isDefault());
    QMetaObject::invokeMethod(host.tab, "selected");
    QVERIFY(host.start->isDefault() && !host.quit->isDefault());
    QTest::keyClick(&host.dialog, Qt::Key_Return);
    QCOMPARE(standins.runs().size(), 1);
    VERIFY_DIALOGS(answers);
}

void TestQRTZEBLator::road_data()
{
    // input: a relative name is a copy of the sample in the scratch
    // directory; options: the environment afterwards, " earlier" before.
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QString>("options");
    QTest::addColumn<bool>("runs");
    QTest::addColumn<QString>("zeb");
    const QString nodes = QString("1 3:10 ").repeated(100 * 1024 / 7);
    const QString sketched = " fast_invar       sketch($(id) Skizze ä.dat)";
    QTest::newRow("default panel, sample file")
        << "" << sample() << 0 << QStringList() << defaults << true << "bracket.zeb";
    QTest::newRow("blanks and umlauts, sketch")
        << "tab=1;sketchCombo=$(id) Skizze ä.dat"
        << "Übung/Träger 1.out" << 0 << QStringList() << sketched << true << "Träger 1.zeb";
    QTest::newRow("100 KB node list")
        << "Apply;Nodes=" + nodes << "beam.out" << 0 << QStringList()
        << defaults + "coarsen(0.15, 15, 1, " + nodes + ")" << true << "beam.zeb";
    QTest::newRow("input missing, options set all the same")
        << ""
        << "" << 0 << QStringList{missingInput} << defaults << false << "";
    QTest::newRow("sketch missing, earlier options stay")
        << "tab=1"
        << "beam.out" << 0 << QStringList{noSketch} << " earlier" << true << "beam.zeb";
    QTest::newRow("sketch and input missing, in that order")
        << "tab=1"
        << "" << 0 << QStringList{noSketch, missingInput} << " earlier" << false << "";
    QTest::newRow("translator fails")
        << ""
        << "beam.out" << 3 << QStringList{problems} << defaults << true << "beam.zeb";
    QTest::newRow("input file does not exist")
        << ""
        << "nosuch.out" << 0 << QStringList{problems} << defaults << true << "";
}

void TestQRTZEBLator::road()
{
    QFETCH(QString, settings);
    QFETCH(QString, input);
    QFETCH(int, status);
    QFETCH(QStringList, boxes);
    QFETCH(QString, options);
    QFETCH(bool, runs);
    QFETCH(QString, zeb);
    ScratchDir dir;
    Standins standins(dir.path());
    Standins::setStatus(status);
    qputenv("OKT_ZEBWRITE_OPTIONS", " earlier");
    QVERIFY(QDir().mkpath("Übung") && QFile::copy(sample(), "beam.out") &&
            QFile::copy(sample(), "Übung/Träger 1.out"));
    DialogAnswerer answers;
    for (int i = 0; i < boxes.size(); ++i)
        answers.pressButton("OK");
    Host host;
    apply(host.core, settings);
    host.translate(input);
    VERIFY_DIALOGS(answers);
    QCOMPARE(messages(answers), boxes);
    QCOMPARE(qEnvironmentVariable("OKT_ZEBWRITE_OPTIONS"), options);
    QCOMPARE(standins.runs().size(), int(runs));
    QCOMPARE(QDir().entryList({"*.zeb"}), zeb.isEmpty() ? QStringList() : QStringList{zeb});
    if (!runs)
        return;
    const Standins::Run run = standins.runs().constFirst();
    QCOMPARE(run.program + " " + run.cwd, "qrt2zeb-standin " + dir.path());
    QCOMPARE(run.args, QStringList{input});
    QCOMPARE(run.options, options);
    QCOMPARE(dir.read("runtamsel.bat").split('\n').value(5),
             (Standins::program("qrt2zeb-standin") + " \"" + input + "\"").toLocal8Bit());
    if (!zeb.isEmpty())
        QCOMPARE(dir.read(zeb).split('\n').value(1), "options " + options.toLocal8Bit());
}

QTEST_MAIN(TestQRTZEBLator)
#include "test_qrtzeblator.moc"
