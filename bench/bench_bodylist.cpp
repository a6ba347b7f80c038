// Opens the body list on a database and prints what a user waits for, the
// time until the list is on screen, beside the body library's own count of
// the bodies (the baseline: the list cannot appear before it), each the
// median of several runs with the library's cache dropped, and the memory
// the first list took; the goals for a million bodies: 0.2 s and 64 MB.
//
//     bench_bodylist [BODIES]      default: 1000000
#include "cdbindexdialog.h"
#include "residentmemory.h"
#include "zeb.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace
{

qint64 median(std::vector<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

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
        file.write("BODY flexible part " + QByteArray::number(body) + '\n');
    file.close();
    // The library reads a file changed in the last two seconds afresh on
    // every call; a database in use is older than that.
    QThread::sleep(3);
    const QByteArray name = QFile::encodeName(path);
    std::vector<qint64> counted, shown;
    qint64 grown = 0;
    for (int run = 0; run < 5; ++run) {
        ZEB_Terminate(); // the library forgets the file
        QElapsedTimer clock;
        clock.start();
        ZEB_BodyCount(name.constData());
        counted.push_back(clock.elapsed());

        ZEB_Terminate();
        const qint64 before = residentKiB();
        clock.restart();
        QCDBIndexDialog dialog(nullptr, "INDEXDIALOG", path);
        dialog.show();
        (void)QTest::qWaitForWindowExposed(&dialog);
        QApplication::processEvents();
        shown.push_back(clock.elapsed());
        if (run == 0)
            grown = (residentKiB() - before) / 1024;
    }
    std::printf(
        "%10d bodies, median of 5: list on screen in %5lld ms (goal for 1,000,000: 200 ms); "
        "the library's count alone %5lld ms; memory growth %4lld MB (goal: 64 MB)\n",
        bodies, static_cast<long long>(median(shown)), static_cast<long long>(median(counted)),
        static_cast<long long>(grown));
    return 0;
}
