#pragma once

#include <QFile>

// A figure of this process's memory from /proc/self/status, in KiB: VmRSS
// (held now) or VmHWM (the peak since start or since resetPeak()).
inline qint64 statusKiB(const char* field)
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(qsizetype(qstrlen(field))).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

inline qint64 residentKiB()
{
    return statusKiB("VmRSS:");
}

// Makes the peak the present figure ("5" to clear_refs).
inline void resetPeak()
{
    QFile reset("/proc/self/clear_refs");
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
}
