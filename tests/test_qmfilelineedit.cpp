// The file field, driven with the mouse and the keyboard's menu, and through
// its real choosers.
#include "app_qmfilelineedit.h"

#include "dialoganswerer.h"
#include "scratchdir.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QSignalSpy>

namespace
{

// The field under test, shown so that it takes mouse events.
struct Field : QMFileLineEdit {
    explicit Field(int kind, const QString& text = "") : QMFileLineEdit(nullptr, "inputFile", kind)
    {
        setText(text);
        changed.clear();
        resize(200, 25);
        show();
    }
    QSignalSpy changed{this, &QLineEdit::textChanged};
};

// The paths a short form was asked for; "A B" has one, as on a system with short names.
QStringList asks;

std::string shortPathName(const std::string& p)
{
    asks.append(QString::fromStdString(p));
    return asks.last().endsWith("/A B") ? p.substr(0, p.size() - 3) + "AB~1" : "";
}

const int dirMode = QMFileLineEdit::DirMode, fileMode = QMFileLineEdit::FileMode,
          filesMode = QMFileLineEdit::MultiFileMode, plainMode = QMFileLineEdit::PlainMode;

} // namespace

class TestQMFileLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QMFileLineEdit::shortPathName = shortPathName; }
    void cleanup() { QMFileLineEdit::lastDir.clear(); }

    void gestures_data()
    {
        QTest::addColumn<int>("mode"); // paths in the scratch directory
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("gesture"); // right: the press through the window, as a mouse
        QTest::addColumn<QString>("chosen");  // the path, "-" a cancel; "": nothing may come
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("changes");   // textChanged emissions
        QTest::addColumn<QString>("asked"); // for a short form
        QTest::addColumn<QString>("lastDir");
        const QString far = "some/long/path/body.zeb";
        // clang-format off
        QTest::newRow("folder shortened")      << dirMode   << "old"      << "right"        << "A B"         << "AB~1"         << 2 << "A B" << "";
        QTest::newRow("new file")              << fileMode  << "old"      << "right"        << "A B/new.zeb" << "AB~1/new.zeb" << 2 << "A B" << "A B";
        QTest::newRow("no short form")         << fileMode  << "old"      << "right"        << "p/my.zeb"    << "p/my.zeb"     << 2 << "p"   << "p";
        QTest::newRow("same text, still told") << fileMode  << "p/my.zeb" << "right"        << "p/my.zeb"    << "p/my.zeb"     << 1 << "p"   << "p";
        QTest::newRow("files, never short")    << filesMode << "old"      << "right"        << "A B/a b.zeb" << "A B/a b.zeb"  << 2 << ""    << "A B";
        QTest::newRow("double click, empty")   << fileMode  << ""         << "double left"  << "-"           << ""             << 0 << ""    << "";
        QTest::newRow("double click, text")    << fileMode  << "a.zeb"    << "double left"  << ""            << "a.zeb"        << 0 << ""    << "";
        QTest::newRow("right double click")    << fileMode  << ""         << "double right" << ""            << ""             << 0 << ""    << "";
        QTest::newRow("click, caret stays")    << fileMode  << far        << "click left"   << ""            << far            << 0 << ""    << "";
        QTest::newRow("plain field, right")    << plainMode << ""         << "right"        << ""            << ""             << 0 << ""    << "";
        QTest::newRow("menu key: edit menu")   << fileMode  << far        << "menu key"     << "Select All"  << far            << 0 << ""    << "";
        // clang-format on
    }

    void gestures()
    {
        QFETCH(int, mode);
        QFETCH(QString, gesture);
        QFETCH(QString, chosen);
        ScratchDir dir;
        QVERIFY(QDir().mkdir("A B") && QDir().mkdir("p") && dir.write("A B/a b.zeb", ""));
        const auto expand = [&dir](const QString& s) { return s.isEmpty() ? s : dir.filePath(s); };
        asks.clear();
        QFETCH(QString, before);
        Field field(mode, expand(before));
        field.setCursorPosition(0);
        DialogAnswerer answers;
        const QString entries[] = {"Select A Directory", "Select A File", "Select Files"};
        const bool path = !chosen.isEmpty() && chosen != "-" && chosen != "Select All";
        if (gesture == "right" && path)
            answers.chooseMenuEntry(entries[mode]);
        if (chosen == "-")
            answers.cancelFileDialog();
        else if (!chosen.isEmpty())
            path ? answers.chooseFile(expand(chosen)) : answers.chooseMenuEntry(chosen);
        const Qt::MouseButton button = gesture.endsWith("left") ? Qt::LeftButton : Qt::RightButton;
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {5, 5}, {5, 5});
        if (gesture.startsWith("double")) {
            QTest::mouseDClick(&field, button);
        } else if (gesture == "menu key") { // the line edit's own edit menu
            QApplication::sendEvent(&field, &menuKey);
        } else { // through the window, where the edit menu would come
            QTest::mousePress(field.windowHandle(), button, {}, QPoint(190, 12));
            QTest::mouseRelease(field.windowHandle(), button, {}, QPoint(190, 12));
        }
        VERIFY_DIALOGS(answers);
        const int modes[] = {QFileDialog::Directory, QFileDialog::AnyFile,
                             QFileDialog::ExistingFiles};
        const int fileMode = answers.seen().isEmpty() ? -1 : answers.seen().constLast().fileMode;
        QCOMPARE(fileMode, path || chosen == "-" ? modes[mode] : -1);
        QFETCH(QString, text);
        QCOMPARE(field.text(), expand(text));
        QTEST(int(field.changed.size()), "changes");
        QFETCH(QString, asked);
        QCOMPARE(asks.join('|'), expand(asked)); // never the file's own name
        QFETCH(QString, lastDir);
        QCOMPARE(QMFileLineEdit::lastDir, expand(lastDir));
        QCOMPARE(field.selectedText(), chosen == "Select All" ? field.text() : "");
        if (!path) // a press neither moves the caret nor selects
            QCOMPARE(field.cursorPosition(), field.selectedText().size());
    }

    void choosersInTurn()
    {
        ScratchDir dir;
        QVERIFY(QDir().mkdir("models") && QDir().mkdir("elsewhere"));
        QVERIFY(dir.write("models/a.txt", "a") && dir.write("models/b.txt", "b"));
        const QString models = dir.filePath("models"), elsewhere = dir.filePath("elsewhere");
        const QStringList list{"ZEB files (*.zeb)", "HX DB files (*.MASTER)"};
        Field file(fileMode, "kept"), folder(dirMode, "kept"), files(filesMode, "kept"),
            listed(fileMode);
        files.filter = "Text (*.txt)";
        listed.filters = list;
        listed.filter = "All Files (*)"; // ignored beside a list
        DialogAnswerer answers;
        answers.cancelFileDialog(elsewhere).chooseFile(models + "/new.mtx");
        answers.cancelFileDialog(elsewhere).chooseFiles({models + "/a.txt", models + "/b.txt"});
        answers.cancelFileDialog(elsewhere).cancelFileDialog();
        file.startFileBrowser();
        // A cancel: no change.
        QCOMPARE(file.text() + "|" + QMFileLineEdit::lastDir, QString("kept|"));
        QCOMPARE(file.changed.size(), 0);
        file.startFileBrowser();
        folder.startDirBrowser();
        files.startMFileBrowser();
        QCOMPARE(files.text(), models + "/a.txt " + models + "/b.txt");
        // The extra emission carries the one file the dialog reports.
        QCOMPARE(files.changed.size(), 2);
        QCOMPARE(files.changed.last().first().toString(), models + "/a.txt");
        files.filter = "Other (*.x)"; // once in the list, a changed filter has no effect
        files.startMFileBrowser();
        listed.startFileBrowser();
        VERIFY_DIALOGS(answers);
        // A cancel empties the files and still moves lastDir.
        QCOMPARE(folder.text() + "|" + files.text() + "|" + QMFileLineEdit::lastDir,
                 "kept||" + elsewhere);
        // The folder chooser opens in the working directory, not in lastDir.
        QStringList opened;
        for (const auto& seen : answers.seen())
            opened.append(seen.directory + " " + seen.filters.join('|'));
        const QString here = dir.path() + " All Files (*)", text = models + " Text (*.txt)";
        QCOMPARE(opened,
                 (QStringList{here, here, here, text, text, elsewhere + " " + list.join('|')}));
    }
};

QTEST_MAIN(TestQMFileLineEdit)
#include "test_qmfilelineedit.moc"
