// The file field, driven with the mouse and through its real choosers.
#include "app_qmfilelineedit.h"

#include "dialoganswerer.h"
#include "scratchdir.h"

#include <QDir>
#include <QFileDialog>
#include <QSignalSpy>
#include <QTest>

namespace
{

// The field under test, shown so that it takes mouse events.
struct Field : QMFileLineEdit {
    explicit Field(int mode, const QString& text = "") : QMFileLineEdit(nullptr, "inputFile", mode)
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
    void chooserFromMenu_data();
    void chooserFromMenu();
    void mouse_data();
    void mouse();
    void choosersInTurn();
};

void TestQMFileLineEdit::chooserFromMenu_data()
{
    QTest::addColumn<int>("mode"); // paths in the scratch directory
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("changes");   // textChanged emissions; 1: the text was there before
    QTest::addColumn<QString>("asked"); // for a short form
    QTest::addColumn<QString>("lastDir");
    // clang-format off
    QTest::newRow("folder shortened")      << dirMode   << "A B"         << "AB~1"         << 2 << "A B" << "";
    QTest::newRow("new file")              << fileMode  << "A B/new.zeb" << "AB~1/new.zeb" << 2 << "A B" << "A B";
    QTest::newRow("no short form")         << fileMode  << "p/my.zeb"    << "p/my.zeb"     << 2 << "p"   << "p";
    QTest::newRow("same text, still told") << fileMode  << "p/my.zeb"    << "p/my.zeb"     << 1 << "p"   << "p";
    QTest::newRow("files, never short")    << filesMode << "A B/a b.zeb" << "A B/a b.zeb"  << 2 << ""    << "A B";
    // clang-format on
}

void TestQMFileLineEdit::chooserFromMenu()
{
    QFETCH(int, mode);
    QFETCH(QString, chosen);
    QFETCH(QString, text);
    QFETCH(int, changes);
    QFETCH(QString, asked);
    QFETCH(QString, lastDir);
    ScratchDir dir;
    QVERIFY(QDir().mkdir("A B") && QDir().mkdir("p") && dir.write("A B/a b.zeb", ""));
    const auto expand = [&dir](const QString& s) { return s.isEmpty() ? s : dir.filePath(s); };
    asks.clear();
    Field field(mode, changes == 1 ? expand(text) : "old");
    DialogAnswerer answers;
    const QString entries[] = {"Select A Directory", "Select A File", "Select Files"};
    answers.chooseMenuEntry(entries[mode]).chooseFile(expand(chosen));
    // Through the window, as a real mouse: only our menu may come.
    QTest::mousePress(field.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    QTest::mouseRelease(field.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    VERIFY_DIALOGS(answers);
    const int modes[] = {QFileDialog::Directory, QFileDialog::AnyFile, QFileDialog::ExistingFiles};
    QCOMPARE(answers.seen()[1].fileMode, modes[mode]);
    QCOMPARE(field.text(), expand(text));
    QCOMPARE(field.changed.size(), changes);
    QCOMPARE(asks.join('|'), expand(asked)); // never the file's own name
    QCOMPARE(QMFileLineEdit::lastDir, expand(lastDir));
}

void TestQMFileLineEdit::mouse_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("gesture");
    QTest::addColumn<bool>("opens");
    // clang-format off
    QTest::newRow("double click, empty") << fileMode  << ""                           << "double left"  << true;
    QTest::newRow("double click, text")  << fileMode  << "a.zeb"                      << "double left"  << false;
    QTest::newRow("right double click")  << fileMode  << ""                           << "double right" << false;
    QTest::newRow("click, caret stays")  << fileMode  << "C:/some/long/path/body.zeb" << "click left"   << false;
    QTest::newRow("plain field, right")  << plainMode << ""                           << "click right"  << false;
    // clang-format on
}

void TestQMFileLineEdit::mouse()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    QFETCH(QString, gesture);
    QFETCH(bool, opens);
    Field field(mode, text);
    field.setCursorPosition(0);
    DialogAnswerer answers;
    if (opens)
        answers.cancelFileDialog();
    const Qt::MouseButton button = gesture.endsWith("left") ? Qt::LeftButton : Qt::RightButton;
    if (gesture.startsWith("double")) {
        QTest::mouseDClick(&field, button);
    } else { // through the window, where the edit menu would come
        QTest::mousePress(field.windowHandle(), button, {}, QPoint(190, 12));
        QTest::mouseRelease(field.windowHandle(), button, {}, QPoint(190, 12));
    }
    VERIFY_DIALOGS(answers);
    QCOMPARE(answers.seen().size(), int(opens));
    QCOMPARE(field.cursorPosition(), 0);
    QVERIFY(!field.hasSelectedText());
}

void TestQMFileLineEdit::choosersInTurn()
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
    answers.cancelFileDialog(elsewhere).chooseFile(models + "/new.mtx").cancelFileDialog(elsewhere);
    answers.chooseFiles({models + "/a.txt", models + "/b.txt"}).cancelFileDialog(elsewhere);
    answers.cancelFileDialog();
    file.startFileBrowser();
    QCOMPARE(file.text() + "|" + QMFileLineEdit::lastDir, QString("kept|")); // a cancel: no change
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
    QCOMPARE(folder.text() + "|" + files.text(), QString("kept|")); // a cancel empties the files
    QCOMPARE(QMFileLineEdit::lastDir, elsewhere);                   // and still moves lastDir
    // The folder chooser opens in the working directory, not in lastDir.
    QStringList opened;
    for (const auto& seen : answers.seen())
        opened.append(seen.directory);
    QCOMPARE(opened, (QStringList{dir.path(), dir.path(), dir.path(), models, models, elsewhere}));
    QCOMPARE(answers.seen()[3].filters, QStringList{"Text (*.txt)"});
    QCOMPARE(answers.seen()[4].filters, QStringList{"Text (*.txt)"});
    QCOMPARE(answers.seen()[5].filters, list);
}

QTEST_MAIN(TestQMFileLineEdit)
#include "test_qmfilelineedit.moc"
