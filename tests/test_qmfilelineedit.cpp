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
struct Field {
    explicit Field(int mode, const QString& text = QString()) : edit(nullptr, "inputFile", mode)
    {
        edit.setText(text);
        edit.resize(200, 25);
        edit.show();
    }
    QMFileLineEdit edit;
};

// A scratch directory with "Long Dir/my file.zeb", whose directory has the
// short form "LONGDI~1" as on a system with short names.
struct LongDir : ScratchDir {
    LongDir()
    {
        QDir(path()).mkdir("Long Dir");
        write("Long Dir/my file.zeb", "x");
        QMFileLineEdit::shortPathName = [this](const std::string& p) {
            asked.append(QString::fromStdString(p));
            return QString::fromStdString(p) == filePath("Long Dir")
                       ? filePath("LONGDI~1").toStdString()
                       : std::string();
        };
    }
    QString expand(QString s) const { return s.replace("%d", path()); }
    QStringList asked;
};

} // namespace

class TestQMFileLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void menuLeadsToChooser_data();
    void menuLeadsToChooser();
    void doubleClick_data();
    void doubleClick();
    void leftPressLeavesCaretAlone();
    void fileChoice_data();
    void fileChoice();
    void lastDirIsSharedByFileChoosers();
    void filterStep_data();
    void filterStep();
    void multipleFilesJoined();
    void cancelledChoosers();
};

void TestQMFileLineEdit::cleanup()
{
    QMFileLineEdit::lastDir.clear();
    QMFileLineEdit::shortPathName = [](const std::string&) { return std::string(); };
}

void TestQMFileLineEdit::menuLeadsToChooser_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("lastDir");

    QTest::newRow("directory, shortened whole")
        << int(QMFileLineEdit::DirMode) << "Select A Directory" << int(QFileDialog::Directory)
        << "Select a Directory"
        << "%d/Long Dir"
        << "%d/LONGDI~1"
        << "";
    QTest::newRow("file, directory part shortened")
        << int(QMFileLineEdit::FileMode) << "Select A File" << int(QFileDialog::AnyFile) << ""
        << "%d/Long Dir/my file.zeb"
        << "%d/LONGDI~1/my file.zeb"
        << "%d/Long Dir";
    QTest::newRow("files, never shortened") << int(QMFileLineEdit::MultiFileMode) << "Select Files"
                                            << int(QFileDialog::ExistingFiles) << ""
                                            << "%d/Long Dir/my file.zeb"
                                            << "%d/Long Dir/my file.zeb"
                                            << "%d/Long Dir";
}

void TestQMFileLineEdit::menuLeadsToChooser()
{
    QFETCH(int, mode);
    QFETCH(QString, entry);
    QFETCH(int, fileMode);
    QFETCH(QString, title);
    QFETCH(QString, chosen);
    QFETCH(QString, text);
    QFETCH(QString, lastDir);
    LongDir dir;
    Field field(mode, "old text");
    QSignalSpy changed(&field.edit, &QLineEdit::textChanged);

    DialogAnswerer answers;
    answers.chooseMenuEntry(entry).chooseFile(dir.expand(chosen));
    // Through the window, as a real mouse: only our menu may come.
    QTest::mousePress(field.edit.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    QTest::mouseRelease(field.edit.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    VERIFY_DIALOGS(answers);

    QCOMPARE(answers.seen().size(), 2);
    QCOMPARE(answers.seen()[0].buttons, QStringList{entry});
    QCOMPARE(answers.seen()[0].title, QString("FileLineEditMenu"));
    QCOMPARE(answers.seen()[1].fileMode, fileMode);
    QCOMPARE(answers.seen()[1].title, title);
    QCOMPARE(answers.seen()[1].parentClass, QString("QMFileLineEdit"));
    QCOMPARE(answers.seen()[1].directory, dir.path()); // the working directory at first
    QCOMPARE(field.edit.text(), dir.expand(text));
    QCOMPARE(changed.size(), 2); // setText, then once more by the chooser
    QCOMPARE(QMFileLineEdit::lastDir, dir.expand(lastDir));
}

void TestQMFileLineEdit::doubleClick_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("opens");

    QTest::newRow("empty file field")
        << int(QMFileLineEdit::FileMode) << "" << int(Qt::LeftButton) << true;
    QTest::newRow("field with text")
        << int(QMFileLineEdit::FileMode) << "a.zeb" << int(Qt::LeftButton) << false;
    QTest::newRow("right button") << int(QMFileLineEdit::FileMode) << "" << int(Qt::RightButton)
                                  << false;
    QTest::newRow("plain field") << int(QMFileLineEdit::PlainMode) << "" << int(Qt::LeftButton)
                                 << false;
}

void TestQMFileLineEdit::doubleClick()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    QFETCH(int, button);
    QFETCH(bool, opens);
    ScratchDir dir;
    Field field(mode, text);
    DialogAnswerer answers;
    if (opens)
        answers.cancelFileDialog();
    QTest::mouseDClick(&field.edit, Qt::MouseButton(button));
    VERIFY_DIALOGS(answers);
    QCOMPARE(answers.seen().size(), opens ? 1 : 0);
    QCOMPARE(field.edit.selectedText(), QString()); // no word selection either
}

void TestQMFileLineEdit::leftPressLeavesCaretAlone()
{
    Field field(QMFileLineEdit::FileMode, "C:/some/long/path/body.zeb");
    field.edit.setCursorPosition(0);
    DialogAnswerer answers;
    QTest::mousePress(&field.edit, Qt::LeftButton, {}, QPoint(190, 12));
    QCOMPARE(field.edit.cursorPosition(), 0);
    QVERIFY(!field.edit.hasSelectedText());

    // In the plain field the right button brings no menu at all.
    Field plain(QMFileLineEdit::PlainMode);
    QTest::mousePress(plain.edit.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    QTest::mouseRelease(plain.edit.windowHandle(), Qt::RightButton, {}, QPoint(10, 10));
    VERIFY_DIALOGS(answers);
    QVERIFY(answers.seen().isEmpty());
}

void TestQMFileLineEdit::fileChoice_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("emissions");

    QTest::newRow("new file, directory shortened") << "%d/Long Dir/not yet.zeb"
                                                   << ""
                                                   << "%d/LONGDI~1/not yet.zeb" << 2;
    QTest::newRow("no short form: whole path") << "%d/my.zeb"
                                               << ""
                                               << "%d/my.zeb" << 2;
    QTest::newRow("same text again still heard") << "%d/my.zeb"
                                                 << "%d/my.zeb"
                                                 << "%d/my.zeb" << 1;
}

void TestQMFileLineEdit::fileChoice()
{
    QFETCH(QString, chosen);
    QFETCH(QString, before);
    QFETCH(QString, text);
    QFETCH(int, emissions);
    LongDir dir;
    Field field(QMFileLineEdit::FileMode, dir.expand(before));
    QSignalSpy changed(&field.edit, &QLineEdit::textChanged);
    DialogAnswerer answers;
    answers.chooseFile(dir.expand(chosen));
    field.edit.startFileBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(field.edit.text(), dir.expand(text));
    QCOMPARE(changed.size(), emissions);
    QCOMPARE(dir.asked, QStringList{QFileInfo(dir.expand(chosen)).path()}); // never the name
}

void TestQMFileLineEdit::lastDirIsSharedByFileChoosers()
{
    ScratchDir dir;
    QVERIFY(QDir(dir.path()).mkdir("models"));
    Field first(QMFileLineEdit::FileMode);
    Field second(QMFileLineEdit::MultiFileMode);
    Field third(QMFileLineEdit::DirMode);
    DialogAnswerer answers;
    answers.chooseFile(dir.filePath("models/new.mtx")).cancelFileDialog().cancelFileDialog();
    first.edit.startFileBrowser();
    second.edit.startMFileBrowser();
    third.edit.startDirBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(QMFileLineEdit::lastDir, dir.filePath("models"));
    QCOMPARE(answers.seen()[1].directory, dir.filePath("models"));
    QCOMPARE(answers.seen()[2].directory, dir.path()); // working directory, not lastDir
}

void TestQMFileLineEdit::filterStep_data()
{
    QTest::addColumn<QStringList>("filters");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("shown");

    QTest::newRow("one filter") << QStringList{} << "All QRT files (*.out)"
                                << QStringList{"All QRT files (*.out)"};
    QTest::newRow("list in its order, filter ignored")
        << QStringList{"ZEB files (*.zeb)", "HX DB files (*.MASTER)"} << "All Files (*)"
        << QStringList{"ZEB files (*.zeb)", "HX DB files (*.MASTER)"};
}

void TestQMFileLineEdit::filterStep()
{
    QFETCH(QStringList, filters);
    QFETCH(QString, filter);
    QFETCH(QStringList, shown);
    ScratchDir dir;
    Field field(QMFileLineEdit::FileMode);
    field.edit.filters = filters;
    field.edit.filter = filter;
    DialogAnswerer answers;
    answers.cancelFileDialog().cancelFileDialog();
    field.edit.startFileBrowser();
    // Once in the list, a changed filter has no effect any more.
    field.edit.filter = "Other (*.x)";
    field.edit.startMFileBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(answers.seen()[0].filters, shown);
    QCOMPARE(answers.seen()[1].filters, shown);
}

void TestQMFileLineEdit::multipleFilesJoined()
{
    ScratchDir dir;
    QVERIFY(dir.write("a.txt", "a") && dir.write("b.txt", "b"));
    Field field(QMFileLineEdit::MultiFileMode);
    QSignalSpy changed(&field.edit, &QLineEdit::textChanged);
    DialogAnswerer answers;
    answers.chooseFiles({dir.filePath("a.txt"), dir.filePath("b.txt")});
    QTest::mouseDClick(&field.edit, Qt::LeftButton);
    VERIFY_DIALOGS(answers);
    QCOMPARE(field.edit.text(), dir.filePath("a.txt") + " " + dir.filePath("b.txt"));
    // The extra emission carries the one file the dialog reports.
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.last().first().toString(), dir.filePath("a.txt"));
}

void TestQMFileLineEdit::cancelledChoosers()
{
    ScratchDir dir;
    QVERIFY(QDir(dir.path()).mkdir("elsewhere"));
    QMFileLineEdit::lastDir = dir.path();
    Field file(QMFileLineEdit::FileMode, "kept?");
    Field folder(QMFileLineEdit::DirMode, "kept?");
    Field files(QMFileLineEdit::MultiFileMode, "kept?");
    QSignalSpy fileChanged(&file.edit, &QLineEdit::textChanged);
    const QString elsewhere = dir.filePath("elsewhere");
    DialogAnswerer answers;
    answers.cancelFileDialog(elsewhere).cancelFileDialog(elsewhere).cancelFileDialog(elsewhere);
    file.edit.startFileBrowser();
    folder.edit.startDirBrowser();
    QCOMPARE(QMFileLineEdit::lastDir, dir.path());
    files.edit.startMFileBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(file.edit.text(), QString("kept?"));
    QCOMPARE(fileChanged.size(), 0);
    QCOMPARE(folder.edit.text(), QString("kept?"));
    QCOMPARE(files.edit.text(), QString());       // a cancel empties this one
    QCOMPARE(QMFileLineEdit::lastDir, elsewhere); // and still moves lastDir
}

QTEST_MAIN(TestQMFileLineEdit)
#include "test_qmfilelineedit.moc"
