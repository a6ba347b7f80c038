// The matrix tab's run: the boxes it shows in their order, the final output
// name, and the command line as the stand-in receives it through the
// console.
#include "zebmtxlator.h"

#include "qrtroad_helpers.h"
#include "scratchdir.h"
#include "standins.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

class TestZEBMTXLator : public QObject
{
    Q_OBJECT

private slots:
    void translate_data()
    {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QStringList>("presses");
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<QString>("args"); // as the stand-in received them; empty: no run

        using L = QStringList;
        const QString info = "info: %T %1 [OK|Cancel] OK/Cancel";
        const QString overwrite = "Tamsel: A file called model.mtx already exists.\n"
                                  "Do you want to overwrite it? [&Yes|No] No/ in ZEBMTXLator";
        const QString noOutput = "Missing File: You must supply an output Matrix file. [OK] OK/OK";
        const QString noInput =
            "Missing File: You must supply an input ZEB or HX DB file. [OK] OK/OK";
        const QString failed = "Translation Problems: Translating ZEB to MTX problems.\n"
                               "Check your environment, permissions. [OK] OK/";
        const QString beam = info.arg("\"beam.zeb\" -o \"model.mtx\" -F");
        const QList<QPair<QString, QString>> names{
            {"ARM.MTX", "ARM.MTX"},   {"arm.txt", "arm.txt"}, {"a.b.c", "a.b.c"},
            {"x.b/c", "x.b/c"},       {"arm", "arm.mtx"},     {"  arm  ", "arm.mtx"},
            {"abc.de", "abc.de.mtx"}, {"ab", "ab.mtx"},       {"arm.mtxx", "arm.mtxx.mtx"},
            {".abc", ".abc"}};
        for (const auto& [typed, name] : names)
            QTest::newRow(qPrintable("output name " + typed))
                << L{"inputCombo=beam.zeb", "outputLE=" + typed} << L{"Cancel"}
                << L{info.arg("\"beam.zeb\" -o \"" + name + "\" -F")} << "";
        // clang-format off
        QTest::newRow("worked line: third body")
            << L{"inputCombo=arm.MASTER", "inputFile=3", "outputLE=arm_out", "nodeIDs=1 3:10 11 15",
                 "modeList=7:12", "-M", "lengthCB=MILLIMETER", "forceCB=KNEWTON", "-F"} << L{"OK"}
            << L{info.arg("\"arm.MASTER::3\" -o \"arm_out.mtx\" +N 1 3:10 11 15 -M 7:12 "
                          "-l MILLIMETER -f KNEWTON")}
            << "arm.MASTER::3|-o|arm_out.mtx|+N|1|3:10|11|15|-M|7:12|-l|MILLIMETER|-f|KNEWTON";
        QTest::newRow("every unit, in flag order")
            << L{"inputCombo=arm.zeb", "outputLE=m.mtx", "nodeIDs=5", "-N", "modeList=1:4",
                 "lengthCB=INCH", "timeCB=HOUR", "massCB=SLUG", "forceCB=DYNE"} << L{"OK"}
            << L{info.arg("\"arm.zeb\" -o \"m.mtx\" -N 5 +M 1:4 -l INCH -m SLUG -t HOUR -f DYNE -F")}
            << "arm.zeb|-o|m.mtx|-N|5|+M|1:4|-l|INCH|-m|SLUG|-t|HOUR|-f|DYNE|-F";
        QTest::newRow("blanks, shell and 8-bit text in names")
            << L{"inputCombo=$(id);Träger 1.zeb", "outputLE= my out ", "nodeIDs=  "} << L{"OK"}
            << L{info.arg("\"$(id);Träger 1.zeb\" -o \"my out.mtx\" +N    -F")}
            << "$(id);Träger 1.zeb|-o|my out.mtx|+N|-F";
        // A name is one argument, whatever quotes and backslashes it holds.
        QTest::newRow("quote in a name adds no argument")
            << L{"inputCombo=in.zeb\" -o victim.txt -t", R"(outputLE=my\"x\)"} << L{"OK"}
            << L{info.arg("\"in.zeb\\\" -o victim.txt -t\" -o \"my\\\\\\\"x\\.mtx\" -F")}
            << "in.zeb\" -o victim.txt -t|-o|my\\\"x\\.mtx|-F";
        QTest::newRow("translator path with a quote")
            << L{"inputCombo=beam.zeb", "outputLE=new", "tool=/opt/my \"tools/zeb2mtx"} << L{"OK"}
            << L{"Unable To Run: The translator /opt/my \"tools/zeb2mtx (OKT_ZEB2MTX) cannot be "
                 "started: a command line cannot carry a path with a quote, a line break or a NUL "
                 "character.\nSet OKT_ZEB2MTX to a path without them, for instance a link "
                 "to the translator.\nNothing was run. [OK] OK/OK"} << "";
        QTest::newRow("blank output, first") << L{"outputLE=  "} << L{"OK"} << L{noOutput} << "";
        QTest::newRow("overwrite, then missing input") << L{"outputLE=model"} << L{"&Yes", "OK"}
            << L{overwrite, noInput} << "";
        const L model{"inputCombo=beam.zeb", "outputLE=model"};
        QTest::newRow("overwrite answered No") << model << L{"No"} << L{overwrite} << "";
        QTest::newRow("info cancelled after Yes") << model << L{"&Yes", "Cancel"}
            << L{overwrite, beam} << "";
        QTest::newRow("Yes and OK, .mtx typed") << L{"inputCombo=beam.zeb", "outputLE=model.mtx"}
            << L{"&Yes", "OK"} << L{overwrite, beam} << "beam.zeb|-o|model.mtx|-F";
        QTest::newRow("translator fails") << model + L{"status=5"} << L{"&Yes", "OK", "OK"}
            << L{overwrite, beam, failed} << "beam.zeb|-o|model.mtx|-F";
        QTest::newRow("blank input, unreadable") << L{"inputCombo=  ", "outputLE=out"} << L{"OK", "OK"}
            << L{info.arg("\"\" -o \"out.mtx\" -F"), failed} << "|-o|out.mtx|-F";
        // clang-format on
    }

    void translate()
    {
        QFETCH(QStringList, settings);
        QFETCH(QStringList, presses);
        QFETCH(QString, args);
        ScratchDir dir;
        for (const char* name : {"beam.zeb", "arm.zeb", "$(id);Träger 1.zeb", "arm.MASTER",
                                 "victim.txt", "in.zeb\" -o victim.txt -t"})
            dir.write(name, "HXDB 1\nBODY a\nBODY b\nBODY c\n");
        dir.write("model.mtx", "old");
        Standins standins(dir.path());
        ZEBMTXLator tab(nullptr, "ZEBMTXLator");
        // "name=text" fills a field or picks a unit; -N and -M choose "Exclude" for
        // nodes or modes, -F clears "Fast Invar", "status=n" makes the stand-in
        // fail, "tool=path" names the translator.
        const auto radios = tab.findChildren<QRadioButton*>();
        for (const QString& s : settings) {
            const QString key = s.section('=', 0, 0), value = s.section('=', 1);
            if (auto* edit = tab.findChild<QLineEdit*>(key))
                edit->setText(value);
            if (auto* box = tab.findChild<QComboBox*>(key))
                box->setCurrentText(value);
            if (s == "-N" || s == "-M")
                radios[s == "-N" ? 1 : 3]->setChecked(true);
            if (s == "-F")
                tab.findChild<QCheckBox*>()->setChecked(false);
            if (key == "status")
                Standins::setStatus(value.toInt());
            if (key == "tool")
                qputenv("OKT_ZEB2MTX", value.toUtf8());
        }
        DialogAnswerer answers;
        for (const QString& press : presses)
            answers.pressButton(press);
        QTest::mouseClick(tab.findChild<QPushButton*>(), Qt::LeftButton);
        VERIFY_DIALOGS(answers);
        QStringList seen = answers.boxes();
        QTEST(seen.replaceInStrings(Standins::program("zeb2mtx-standin"), "%T"), "boxes");
        QCOMPARE(standins.runs().size(), int(!args.isEmpty()));
        QCOMPARE(standins.runs().value(0).args, args.isEmpty() ? QStringList() : args.split('|'));
        QCOMPARE(dir.read("runtamsel.bat").isEmpty(), args.isEmpty());
        QCOMPARE(dir.read("victim.txt"), QByteArray("HXDB 1\nBODY a\nBODY b\nBODY c\n"));
    }
};

QTEST_MAIN(TestZEBMTXLator)
#include "test_zebmtxlator.moc"
