// The stand-in body library, read through the same C interface the program
// uses: good databases, everything that is not one, and the cache.
#include "zeb.h"

#include "scratchdir.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace
{

QByteArray info(const QString& path, int index)
{
    char buf[1024];
    std::memset(buf, 'x', sizeof buf); // the caller never clears it
    ZEB_GetBodyInfo(qPrintable(path), index, buf);
    return QByteArray(buf);
}

} // namespace

class TestZeb : public QObject
{
    Q_OBJECT

private slots:
    void database_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArrayList>("bodies");

        const QByteArrayList none;
        // 1021 ASCII bytes and a four-byte character: 1025 bytes do not fit.
        const QByteArray clipped = QByteArray(1021, 'a') + "\U0001F600" + QByteArray(100, 'b');
        // clang-format off
        QTest::newRow("bytes kept, CR LF")
            << QByteArray("HXDB 1\r\nBODY arm_left   nodes=1234 units=mm\nBODY   Bügel links: a::b  \t\r\nBODY \n")
            << QByteArrayList{"arm_left   nodes=1234 units=mm", "  Bügel links: a::b  \t", ""};
        QTest::newRow("other lines ignored")
            << QByteArray("HXDB 1\n# comment\nBODY a\nbody b\n BODY c\nBODYd\nBODY e") << QByteArrayList{"a", "e"};
        QTest::newRow("clipped whole")
            << "HXDB 1\nBODY " + clipped + "\nBODY " + QByteArray(1023, 'c')
            << QByteArrayList{QByteArray(1021, 'a'), QByteArray(1023, 'c')};
        QTest::newRow("empty file")             << QByteArray("")                         << none;
        QTest::newRow("wrong version")          << QByteArray("HXDB 2\nBODY a\n")         << none;
        QTest::newRow("magic not first")        << QByteArray("\nHXDB 1\nBODY a\n")       << none;
        QTest::newRow("magic with more behind") << QByteArray("HXDB 10\nBODY a\n")        << none;
        QTest::newRow("binary with magic")      << QByteArray("HXDB 1\nBODY a\0b\n", 16)  << none;
        // clang-format on
    }

    void database()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArrayList, bodies);
        ScratchDir dir;
        QVERIFY(dir.write("db.MASTER", content));
        const QString db = dir.filePath("db.MASTER");
        QCOMPARE(ZEB_BodyCount(qPrintable(db)), bodies.size());
        for (int i = 0; i <= bodies.size() + 1; ++i) // 0 and past the end: empty
            QCOMPARE(info(db, i), bodies.value(i - 1));
    }

    void notADatabase()
    {
        ScratchDir dir;
        QVERIFY(QDir().mkdir("folder.MASTER"));
        QCOMPARE(::mkfifo("fifo.MASTER", 0600), 0);
        // The fifo must not block; none of them may crash.
        for (const QString& path : {QString(), dir.filePath("missing"),
                                    dir.filePath("folder.MASTER"), dir.filePath("fifo.MASTER")}) {
            QCOMPARE(ZEB_BodyCount(qPrintable(path)), 0);
            QCOMPARE(info(path, 1), QByteArray());
        }
        QCOMPARE(ZEB_BodyCount(nullptr), 0);
        QCOMPARE(ZEB_GetBodyInfo(nullptr, 1, nullptr), 0);

        // A good start, then a gigabyte of NULs: given up without reading it all in.
        const QString big = dir.filePath("big.MASTER");
        QVERIFY(dir.write("big.MASTER", "HXDB 1\nBODY a\n"));
        QVERIFY(QFile::resize(big, qint64(1) << 30)); // sparse
        rusage before{}, after{};
        ::getrusage(RUSAGE_SELF, &before);
        QCOMPARE(ZEB_BodyCount(qPrintable(big)), 0);
        ::getrusage(RUSAGE_SELF, &after);
        QCOMPARE_LT(after.ru_maxrss - before.ru_maxrss, 8 * 1024); // KiB

        // The cache follows the file as it changes and goes.
        const QString db = dir.filePath("db.MASTER");
        QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY a\nBODY b\n"));
        QTest::qSleep(2100); // old enough to be answered from the cache
        QCOMPARE(info(db, 2), QByteArray("b"));
        // Rewritten with the same size and the old mtime set back.
        struct stat old {
        };
        QCOMPARE(::stat(qPrintable(db), &old), 0);
        QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY a\nbody b\n"));
        const timespec times[2] = {old.st_atim, old.st_mtim};
        QCOMPARE(::utimensat(AT_FDCWD, qPrintable(db), times, 0), 0);
        QCOMPARE(ZEB_BodyCount(qPrintable(db)), 1);
        QVERIFY(dir.write("db.MASTER", "HXDB 1\nBODY a\nBODY b\nBODY c\n"));
        QCOMPARE(ZEB_BodyCount(qPrintable(db)), 3);
        QCOMPARE(info(db, 3), QByteArray("c"));
        QVERIFY(QFile::remove(db));
        QCOMPARE(ZEB_BodyCount(qPrintable(db)), 0);
    }
};

QTEST_GUILESS_MAIN(TestZeb)
#include "test_zeb.moc"
