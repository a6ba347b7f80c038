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
    explicit Field(int mode) : edit(nullptr, "inputFile", mode)
    {
        edit.resize(200, 25);
        edit.show();
    }
    QMFileLineEdit edit;
};

} // namespace

class TestQMFileLineEdit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void menuLeadsToChooser_data();
    void menuLeadsToChooser();
    void doubleClick_data();
    void doubleClick();
    void leftPressLeavesCaretAlone();
    void fileChoiceIsShortened_data();
    void fileChoiceIsShortened();
    void dirChoiceIsShortenedWhole();
    void lastDirIsSharedByFileChoosers();
    void filterStep_data();
    void filterStep();
    void multipleFilesJoined();
    void cancelledChoosers();
    void textChangedEvenWhenUnchanged();
};

void TestQMFileLineEdit::init()
{
    QMFileLineEdit::lastDir.clear();
    QMFileLineEdit::shortPathName = [](const std::string&) { return std::string(); };
}

void TestQMFileLineEdit::cleanup()
{
    QMFileLineEdit::lastDir.clear();
}

void TestQMFileLineEdit::menuLeadsToChooser_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<QString>("title");

    QTest::newRow("directory") << int(QMFileLineEdit::DirMode) << "Select A Directory"
                               << int(QFileDialog::Directory) << "Select a Directory";
    QTest::newRow("file") << int(QMFileLineEdit::FileMode) << "Select A File"
                          << int(QFileDialog::AnyFile) << "";
    QTest::newRow("files") << int(QMFileLineEdit::MultiFileMode) << "Select Files"
                           << int(QFileDialog::ExistingFiles) << "";
}

void TestQMFileLineEdit::menuLeadsToChooser()
{
    QFETCH(int, mode);
    QFETCH(QString, entry);
    QFETCH(int, fileMode);
    QFETCH(QString, title);
    ScratchDir dir;
    QVERIFY(dir.write("b.zeb", "x"));
    Field field(mode);
    field.edit.setText("old text");

    DialogAnswerer answers;
    const QString chosen = mode == QMFileLineEdit::DirMode ? dir.path() : dir.filePath("b.zeb");
    answers.chooseMenuEntry(entry).chooseFile(chosen);
    QTest::mousePress(&field.edit, Qt::RightButton);
    VERIFY_DIALOGS(answers);

    QCOMPARE(answers.seen().size(), 2);
    QCOMPARE(answers.seen()[0].buttons, QStringList{entry});
    QCOMPARE(answers.seen()[1].fileMode, fileMode);
    QCOMPARE(answers.seen()[1].title, title);
    QCOMPARE(answers.seen()[1].parentClass, QString("QMFileLineEdit"));
    // The directory chooser opens in the working directory.
    if (mode == QMFileLineEdit::DirMode)
        QCOMPARE(answers.seen()[1].directory, dir.path());
    QCOMPARE(field.edit.text(), chosen);
}

void TestQMFileLineEdit::doubleClick_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("opens");

    QTest::newRow("empty file field")
        << int(QMFileLineEdit::FileMode) << "" << int(Qt::LeftButton) << true;
    QTest::newRow("empty directory field")
        << int(QMFileLineEdit::DirMode) << "" << int(Qt::LeftButton) << true;
    QTest::newRow("empty multi field")
        << int(QMFileLineEdit::MultiFileMode) << "" << int(Qt::LeftButton) << true;
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
    Field field(mode);
    field.edit.setText(text);
    DialogAnswerer answers;
    if (opens)
        answers.cancelFileDialog();
    QTest::mouseDClick(&field.edit, Qt::MouseButton(button));
    if (!opens) // a right double click starts with a press: no menu may come either
        QTest::mousePress(&field.edit, Qt::LeftButton);
    VERIFY_DIALOGS(answers);
    QCOMPARE(answers.seen().size(), opens ? 1 : 0);
    QCOMPARE(field.edit.selectedText(), QString());
}

void TestQMFileLineEdit::leftPressLeavesCaretAlone()
{
    Field field(QMFileLineEdit::FileMode);
    field.edit.setText("C:/some/long/path/body.zeb");
    field.edit.setCursorPosition(0);
    DialogAnswerer answers;
    QTest::mousePress(&field.edit, Qt::LeftButton, {}, QPoint(190, 12));
    QCOMPARE(field.edit.cursorPosition(), 0);
    QVERIFY(!field.edit.hasSelectedText());

    // In the plain field the right button brings no menu either.
    Field plain(QMFileLineEdit::PlainMode);
    QTest::mousePress(&plain.edit, Qt::RightButton);
    VERIFY_DIALOGS(answers);
    QVERIFY(answers.seen().isEmpty());
}

void TestQMFileLineEdit::fileChoiceIsShortened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasShortForm");
    QTest::addColumn<QString>("expected");

    QTest::newRow("existing file, short dir") << "my file.zeb" << true << "%d/LONGDI~1/my file.zeb";
    QTest::newRow("new file, short dir") << "not yet.zeb" << true << "%d/LONGDI~1/not yet.zeb";
    QTest::newRow("no short form: whole path")
        << "my file.zeb" << false << "%d/Long Dir/my file.zeb";
}

void TestQMFileLineEdit::fileChoiceIsShortened()
{
    QFETCH(QString, name);
    QFETCH(bool, hasShortForm);
    QFETCH(QString, expected);
    ScratchDir dir;
    QVERIFY(QDir(dir.path()).mkdir("Long Dir"));
    QVERIFY(dir.write("Long Dir/my file.zeb", "x"));
    const std::string longDir = (dir.path() + "/Long Dir").toLocal8Bit().toStdString();
    const std::string shortDir = (dir.path() + "/LONGDI~1").toLocal8Bit().toStdString();
    QStringList asked;
    QMFileLineEdit::shortPathName = [&](const std::string& p) {
        asked.append(QString::fromStdString(p));
        return hasShortForm && p == longDir ? shortDir : std::string();
    };
    Field field(QMFileLineEdit::FileMode);
    DialogAnswerer answers;
    answers.chooseFile(dir.filePath("Long Dir/" + name));
    field.edit.startFileBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(asked, QStringList{dir.path() + "/Long Dir"}); // the name is never shortened
    QCOMPARE(field.edit.text(), expected.replace("%d", dir.path()));
}

void TestQMFileLineEdit::dirChoiceIsShortenedWhole()
{
    ScratchDir dir;
    QVERIFY(QDir(dir.path()).mkdir("Long Dir"));
    QMFileLineEdit::shortPathName = [](const std::string& p) {
        return p.size() > 8 ? p.substr(0, p.size() - 8) + "LONGDI~1" : std::string();
    };
    Field field(QMFileLineEdit::DirMode);
    DialogAnswerer answers;
    answers.chooseFile(dir.filePath("Long Dir"));
    field.edit.startDirBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(field.edit.text(), dir.path() + "/LONGDI~1");
    QVERIFY(QMFileLineEdit::lastDir.isEmpty()); // the directory chooser leaves it alone
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
    QVERIFY(dir.write("a.txt", "a"));
    QVERIFY(dir.write("b.txt", "b"));
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
    QCOMPARE(QMFileLineEdit::lastDir, dir.path());
}

void TestQMFileLineEdit::cancelledChoosers()
{
    ScratchDir dir;
    QMFileLineEdit::lastDir = "/";
    Field file(QMFileLineEdit::FileMode);
    Field folder(QMFileLineEdit::DirMode);
    Field files(QMFileLineEdit::MultiFileMode);
    for (Field* f : {&file, &folder, &files})
        f->edit.setText("kept?");
    QSignalSpy fileChanged(&file.edit, &QLineEdit::textChanged);
    DialogAnswerer answers;
    answers.cancelFileDialog().cancelFileDialog().cancelFileDialog();
    file.edit.startFileBrowser();
    folder.edit.startDirBrowser();
    QCOMPARE(QMFileLineEdit::lastDir, QString("/"));
    files.edit.startMFileBrowser();
    VERIFY_DIALOGS(answers);
    QCOMPARE(file.edit.text(), QString("kept?"));
    QCOMPARE(fileChanged.size(), 0);
    QCOMPARE(folder.edit.text(), QString("kept?"));
    QCOMPARE(files.edit.text(), QString()); // cancel empties this one
    QCOMPARE(QMFileLineEdit::lastDir, QString("/"));
}

void TestQMFileLineEdit::textChangedEvenWhenUnchanged()
{
    ScratchDir dir;
    QVERIFY(dir.write("same.zeb", "x"));
    Field field(QMFileLineEdit::FileMode);
    field.edit.setText(dir.filePath("same.zeb"));
    QSignalSpy changed(&field.edit, &QLineEdit::textChanged);
    DialogAnswerer answers;
    answers.chooseFile(dir.filePath("same.zeb")).chooseFile(dir.filePath("other.zeb"));
    field.edit.startFileBrowser();
    QCOMPARE(changed.size(), 1);
    field.edit.startFileBrowser();
    QCOMPARE(changed.size(), 3);
    VERIFY_DIALOGS(answers);
}

QTEST_MAIN(TestQMFileLineEdit)
#include "test_qmfilelineedit.moc"
