// The optimizer tab: the final output name, the run through its checks and
// boxes to the ZEB file the stand-in writes, and the write options it shares
// with the QRT tab through the environment.
#include "zebzebopt.h"

#include "qrtroad_helpers.h"
#include "qrtzeblator.h"
#include "scratchdir.h"
#include "standins.h"

#include <QRegularExpression>
#include <QTest>

const QString database = Standins::examplesDir() + "/vehicle.MASTER";
const QString si = " fast_invar MKS     strip_face "; // the options with SI units

// Settings separated by ";": "index=n" for the body index, else a field or
// panel setting as apply() takes it. Then the start button.
static void run(QWidget* tab, const QString& settings)
{
    for (const QString& s : settings.split(';', Qt::SkipEmptyParts)) {
        if (s.startsWith("index="))
            tab->findChildren<QLineEdit*>("inputFile").constLast()->setText(s.mid(6));
        else
            apply(tab, s);
    }
    QTest::mouseClick(widget<QAbstractButton>(tab, "Begin"), Qt::LeftButton);
}

class TestZEBZEBOpt : public QObject
{
    Q_OBJECT

private slots:
    void fixOutputName()
    {
        // clang-format off
        for (const auto& [typed, name] : QList<QPair<QString, QString>>{
                 {"arm.zeb", "arm.zeb"}, {"ARM.ZEB", "ARM.ZEB"}, {"arm.master", "arm.MASTER"},
                 {"arm.Master", "arm.MASTER"}, {"arm.MASTER", "arm.MASTER"},
                 {"arm.b.master", "arm.b.MASTER"}, {"arm", "arm.zeb"}, {"arm.txt", "arm.txt.zeb"},
                 {"master", ".MASTER"}, {" arm.Zeb ", "arm.Zeb"}, {" arm.master ", " arm.MASTER"},
                 {" arm ", " arm .zeb"}, {"dir.d/arm", "dir.d/arm.zeb"}})
            QCOMPARE(::fixOutputName(typed), name);
        // clang-format on
    }

    void optimize_data()
    {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QStringList>("presses");
        QTest::addColumn<QStringList>("boxes"); // as DialogAnswerer::boxes() gives them
        QTest::addColumn<QString>("args");      // as the stand-in received them; empty: no run
        QTest::addColumn<QString>("options"); // OKT_ZEBWRITE_OPTIONS afterwards, " earlier" before
        using L = QStringList;
        // clang-format off
        const QString info = "info: %T \"%1\" -L -O \"%2\" [OK|Cancel] OK/Cancel", beam = "inputFile=beam.zeb;output=";
        const QString overwrite = "Tamsel: A file called beam.zeb already exists.\n Do you want to overwrite it? [&Yes|No] No/ in ZEBZEBOpt";
        const QString missing = "Missing %1 File: Please provide an %2 ZEB or HX DB file. [OK] OK/OK";
        const QString failed = "Translation Problems: Translating ZEB to MTX problems.\nCheck your environment, permissions. [OK] OK/OK";
        QTest::newRow("both empty: input first") << "" << L{"OK"} << L{missing.arg("Input", "input")} << "" << defaults;
        QTest::newRow("blank output, options of this click") << "unitsCB=SI;" + beam + "   " << L{"OK"} << L{missing.arg("Output", "output")} << "" << si;
        QTest::newRow("invalid index before missing output") << "inputFile=" + database + ";index=13" << L{"OK"} << L{"Invalid Index: The index should be a number from 1 to 12. [OK] OK/OK"} << "" << defaults;
        QTest::newRow("Cancel keeps the options") << "tab=1;sketchCombo=s k.dat;" + beam + "new" << L{"Cancel"} << L{info.arg("beam.zeb", "new.zeb")} << "" << " fast_invar       sketch(s k.dat)";
        QTest::newRow("overwrite answered No") << beam + "beam" << L{"No"} << L{overwrite} << "" << defaults;
        QTest::newRow("output is the input, name completed") << beam + "beam" << L{"&Yes", "OK"} << L{overwrite, info.arg("beam.zeb", "beam.zeb")} << "beam.zeb|-L|-O|beam.zeb" << defaults;
        QTest::newRow("database body 3 to a database name") << "inputFile=" + database + ";index=3;output=body.master" << L{"OK"}
            << L{info.arg(database + "::3", "body.MASTER")} << database + "::3|-L|-O|body.MASTER" << defaults;
        QTest::newRow("no sketch file: earlier options") << "tab=1;" + beam + "new.zeb" << L{"OK", "OK"} << L{noSketch + " OK/OK", info.arg("beam.zeb", "new.zeb")} << "beam.zeb|-L|-O|new.zeb" << " earlier";
        QTest::newRow("blank input: empty quotes, refused, problems") << "inputFile=  ;output=new" << L{"OK", "OK"} << L{info.arg("", "new.zeb"), failed} << "|-L|-O|new.zeb" << defaults;
        // clang-format on
    }

    void optimize()
    {
        QFETCH(QString, settings);
        QFETCH(QStringList, presses);
        QFETCH(QString, args);
        ScratchDir dir;
        Standins standins(dir.path());
        qputenv("OKT_ZEBWRITE_OPTIONS", " earlier");
        QVERIFY(QFile::copy(Standins::examplesDir() + "/beam.zeb", "beam.zeb"));
        ZEBZEBOpt tab(nullptr, "ZEBZEBOpt");
        DialogAnswerer answers;
        for (const QString& press : presses)
            answers.pressButton(press);
        run(&tab, settings);
        VERIFY_DIALOGS(answers);
        const QStringList seen =
            answers.boxes().replaceInStrings(Standins::program("zeb2mtx-standin"), "%T");
        QTEST(seen, "boxes");
        const QString options = qEnvironmentVariable("OKT_ZEBWRITE_OPTIONS");
        QTEST(options, "options");
        const auto runs = standins.runs();
        QCOMPARE(runs.size(), int(!args.isEmpty()));
        if (args.isEmpty() || seen.constLast().startsWith("Translation Problems"))
            return;
        QCOMPARE(runs[0].args, args.split('|'));
        // The first line names the options applied; the blocks come through.
        const QByteArray zeb = dir.read(runs[0].args[3]);
        QVERIFY(zeb.startsWith("ZEB 1.0  optimized by the ZEB2MTX stand-in, write options: " +
                               options.toLocal8Bit() + "\nblock 1  Version code\n"));
        QVERIFY(QRegularExpression("\nblock 8  Mode Shapes\n(  Mode     1\n)?    1 ")
                    .match(QString::fromLatin1(zeb))
                    .hasMatch());
    }

    // Each tab sets the options from its own panel; the later click wins, and a
    // click that leaves the environment alone runs with the other tab's.
    void sharedWithQRTTab()
    {
        ScratchDir dir;
        Standins standins(dir.path());
        ZEBZEBOpt optimizer(nullptr, "ZEBZEBOpt");
        QRTZEBLator translator(nullptr, "QRTZEBLator");
        DialogAnswerer answers;
        answers.pressButton("OK").pressButton("OK").pressButton("OK");
        QStringList seen;
        const QString bracket = Standins::examplesDir() + "/bracket.out";
        // The optimizer, then the translator, in turn.
        for (const QString& step : QStringList{"unitsCB=SI", "input=" + bracket, "", "tab=1"}) {
            run(seen.size() % 2 ? static_cast<QWidget*>(&translator) : &optimizer, step);
            seen.append(qEnvironmentVariable("OKT_ZEBWRITE_OPTIONS"));
        }
        VERIFY_DIALOGS(answers);
        QCOMPARE(seen, (QStringList{si, defaults, si, si}));
        QCOMPARE(messages(answers).constLast(), noSketch);
        QCOMPARE(standins.runs().size(), 2);
    }
};

QTEST_MAIN(TestZEBZEBOpt)
#include "test_zebzebopt.moc"
