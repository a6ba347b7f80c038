// Opens the body list on databases of growing size and prints what a user
// waits for, the time until the list is on screen, and the memory it took,
// next to the goals: a million bodies in 0.2 s and 64 MB. Each size runs in
// a child process of its own, so that its memory is its alone.
//
//     bench_bodylist [BODIES]      default: 200000, 1000000 and 10000000 in turn
#include "cdbindexdialog.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>

namespace
{

qint64 residentKb()
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

void writeDatabase(const QString& path, int bodies)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("HXDB 1\n");
    for (int body = 1; body <= bodies; ++body)
        file.write("BODY  flexible part " + QByteArray::number(body) + ", 2400 nodes, 30 modes\n");
}

int measure(int bodies)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("big.MASTER");
    writeDatabase(path, bodies);
    // The library reads a file changed in the last two seconds afresh on
    // every call; a database in use is older than that.
    QThread::sleep(3);
    const qint64 before = residentKb();
    QElapsedTimer clock;
    clock.start();
    QCDBIndexDialog dialog(nullptr, "INDEXDIALOG", path);
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        return 1;
    QApplication::processEvents();
    const qint64 ms = clock.elapsed();
    const qint64 grown = (residentKb() - before) / 1024;
    std::printf("%10d bodies: on screen in %5lld ms, memory growth %4lld MB%s\n", bodies,
                static_cast<long long>(ms), static_cast<long long>(grown),
                bodies == 1000000 ? "   (goal: <= 200 ms, <= 64 MB)" : "");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc > 1)
        return measure(QByteArray(argv[1]).toInt());
    for (const int bodies : {200000, 1000000, 10000000}) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(), {QString::number(bodies)});
        child.waitForFinished(-1);
    }
    return 0;
}
