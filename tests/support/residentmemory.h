#pragma once

#include <QFile>

// The memory this process holds now (VmRSS), in KiB.
inline qint64 residentKiB()
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return 0;
}
