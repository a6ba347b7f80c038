// Opens the body list on a database and prints what a user waits for, the
// time until the list is on screen, and the memory it took, next to the
// goals for a million bodies: 0.2 s and 64 MB.
//
//     bench_bodylist [BODIES]      default: 1000000
#include "cdbindexdialog.h"
#include "residentmemory.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int bodies = argc > 1 ? QByteArray(argv[1]).toInt() : 1000000;
    QTemporaryDir dir;
    const QString path = dir.filePath("big.MASTER");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("HXDB 1\n");
    for (int body = 1; body <= bodies; ++body)
        file.write("BODY  flexible part " + QByteArray::number(body) + ", 2400 nodes, 30 modes\n");
    file.close();
    // The library reads a file changed in the last two seconds afresh on
    // every call; a database in use is older than that.
    QThread::sleep(3);
    const qint64 before = residentKiB();
    QElapsedTimer clock;
    clock.start();
    QCDBIndexDialog dialog(nullptr, "INDEXDIALOG", path);
    dialog.show();
    (void)QTest::qWaitForWindowExposed(&dialog);
    QApplication::processEvents();
    const qint64 ms = clock.elapsed();
    const qint64 grown = (residentKiB() - before) / 1024;
    std::printf("%10d bodies: on screen in %5lld ms (goal for 1,000,000: 200 ms), memory growth "
                "%4lld MB (goal: 64 MB)\n",
                bodies, static_cast<long long>(ms), static_cast<long long>(grown));
    return 0;
}
