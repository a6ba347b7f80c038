// The stand-in body library, read through the same C interface the program
// uses: good databases, everything that is not one, and the cache.
#include "zeb.h"

#include "scratchdir.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

namespace
{

int count(const QString& path)
{
    return ZEB_BodyCount(path.toLocal8Bit().constData());
}

QByteArray info(const QString& path, int index)
{
    char buf[1024];
    std::memset(buf, 'x', sizeof buf); // the caller never clears it
    ZEB_GetBodyInfo(path.toLocal8Bit().constData(), index, buf);
    return QByteArray(buf);
}

} // namespace

class TestZeb : public QObject
{
    Q_OBJECT

private slots:
    void bodyCount_data();
    void bodyCount();
    void bodyInfo_data();
    void bodyInfo();
    void longDescriptionIsClippedWhole();
    void specialPathsCountZero();
    void cacheFollowsTheFile();
};

void TestZeb::bodyCount_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("bodies");

    QTest::newRow("three bodies") << QByteArray("HXDB 1\nBODY a\nBODY b\nBODY c\n") << 3;
    QTest::newRow("other lines ignored")
        << QByteArray("HXDB 1\n# comment\nBODY a\nbody b\n BODY c\nBODYd\nBODY e") << 2;
    QTest::newRow("crlf lines") << QByteArray("HXDB 1\r\nBODY a\r\nBODY b\r\n") << 2;
    QTest::newRow("magic only") << QByteArray("HXDB 1\n") << 0;
    QTest::newRow("magic without line end") << QByteArray("HXDB 1") << 0;
    QTest::newRow("empty file") << QByteArray() << 0;
    QTest::newRow("wrong version") << QByteArray("HXDB 2\nBODY a\n") << 0;
    QTest::newRow("magic not first") << QByteArray("\nHXDB 1\nBODY a\n") << 0;
    QTest::newRow("magic with more behind") << QByteArray("HXDB 10\nBODY a\n") << 0;
    QTest::newRow("binary with magic") << QByteArray("HXDB 1\nBODY a\0b\n", 16) << 0;
    QTest::newRow("foreign text") << QByteArray("ZEB block 1\n1.0 2.0\n") << 0;
}

void TestZeb::bodyCount()
{
    QFETCH(QByteArray, content);
    QFETCH(int, bodies);
    ScratchDir dir;
    QVERIFY(dir.write("db.MASTER", content));
    QCOMPARE(count(dir.filePath("db.MASTER")), bodies);
}

void TestZeb::bodyInfo_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("first") << 1 << QByteArray("arm_left   nodes=1234 modes=12 units=mm");
    QTest::newRow("blanks, colons and utf-8 kept") << 2 << QByteArray("  Bügel links: a::b  \t");
    QTest::newRow("empty description") << 3 << QByteArray("");
    QTest::newRow("past the end") << 4 << QByteArray("");
    QTest::newRow("zero") << 0 << QByteArray("");
}

void TestZeb::bodyInfo()
{
    QFETCH(int, index);
    QFETCH(QByteArray, expected);
    ScratchDir dir;
    QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY arm_left   nodes=1234 modes=12 units=mm\n"
                                   "BODY   Bügel links: a::b  \t\r\nBODY \n"));
    QCOMPARE(count(dir.filePath("db.MASTER")), 3);
    QCOMPARE(info(dir.filePath("db.MASTER"), index), expected);
}

void TestZeb::longDescriptionIsClippedWhole()
{
    ScratchDir dir;
    // 1022 ASCII bytes and a two-byte character: 1024 bytes do not fit.
    const QByteArray longText = QByteArray(1022, 'a') + "ü" + QByteArray(100, 'b');
    QVERIFY(dir.write("db.MASTER",
                      "HXDB 1\nBODY " + longText + "\nBODY " + QByteArray(1023, 'c') + "\n"));
    QCOMPARE(info(dir.filePath("db.MASTER"), 1), QByteArray(1022, 'a'));
    QCOMPARE(info(dir.filePath("db.MASTER"), 2), QByteArray(1023, 'c'));
}

void TestZeb::specialPathsCountZero()
{
    ScratchDir dir;
    QVERIFY(dir.write("plain", "not a database"));
    QVERIFY(QDir(dir.path()).mkdir("folder.MASTER"));
    QCOMPARE(::mkfifo(dir.filePath("fifo.MASTER").toLocal8Bit().constData(), 0600), 0);

    QCOMPARE(ZEB_BodyCount(nullptr), 0);
    QCOMPARE(ZEB_BodyCount(""), 0);
    QCOMPARE(count(dir.filePath("missing.MASTER")), 0);
    QCOMPARE(count(dir.filePath("folder.MASTER")), 0);
    QCOMPARE(count(dir.filePath("fifo.MASTER")), 0); // must not block on the pipe
    QCOMPARE(count(dir.filePath("plain/under.MASTER")), 0);
    QCOMPARE(count(dir.path() + "/"), 0);

    QCOMPARE(info(QString(), 1), QByteArray());
    QCOMPARE(ZEB_GetBodyInfo(nullptr, 1, nullptr), 0); // no crash, nothing written
}

void TestZeb::cacheFollowsTheFile()
{
    ScratchDir dir;
    const QString db = dir.filePath("db.MASTER");
    QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY a\nBODY b\n"));
    QCOMPARE(count(db), 2);
    QCOMPARE(info(db, 2), QByteArray("b"));

    QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY a\nBODY b\nBODY c\n"));
    QCOMPARE(count(db), 3);
    QCOMPARE(info(db, 3), QByteArray("c"));

    QVERIFY(QFile::remove(db));
    QCOMPARE(count(db), 0);
}

QTEST_GUILESS_MAIN(TestZeb)
#include "test_zeb.moc"
