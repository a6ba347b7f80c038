#include "blockviewfinder.h"

#include <chrono>

namespace
{

// Long enough for a search of a page of ordinary size, short enough to go
// unnoticed.
constexpr auto quickWait = std::chrono::milliseconds(20);
constexpr int tickMs = 100;

} // namespace

BlockViewFinder::BlockViewFinder(QObject* parent) : QObject(parent)
{
    ticker.setInterval(tickMs);
    connect(&ticker, &QTimer::timeout, this, &BlockViewFinder::tick);
}

BlockViewFinder::~BlockViewFinder()
{
    stop();
}

void BlockViewFinder::start(const BlockText& text, const QString& needle, Qt::CaseSensitivity cs,
                            qsizetype line, qsizetype column, bool backward)
{
    stop();
    control.stop = false;
    control.bytes = 0;
    done = false;
    total = std::max<qint64>(1, text.byteCount());
    const quint64 search = ++generation;
    worker = std::thread([this, search, backward, line, column,
                          finder = BlockViewSearch(text, needle, cs, &control)] {
        const BlockViewSearch::Hit result = finder.find(line, column, backward);
        {
            const std::lock_guard<std::mutex> lock(mutex);
            hit = result;
            done = true;
        }
        ended.notify_all();
        // Dropped with this object, should it go first.
        QMetaObject::invokeMethod(
            this,
            [this, search] {
                if (search == generation)
                    finish();
            },
            Qt::QueuedConnection);
    });
    std::unique_lock<std::mutex> lock(mutex);
    if (ended.wait_for(lock, quickWait, [this] { return done; })) {
        lock.unlock();
        finish();
        return;
    }
    clock.start();
    ticker.start();
}

void BlockViewFinder::stop()
{
    if (!isRunning())
        return;
    control.stop = true;
    worker.join();
    ticker.stop();
    ++generation;
}

void BlockViewFinder::finish()
{
    worker.join();
    ticker.stop();
    ++generation;
    BlockViewSearch::Hit result;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        result = hit;
    }
    emit found(result);
}

void BlockViewFinder::tick()
{
    if (clock.elapsed() < quietMs)
        return;
    // The start line is searched twice: never 100 % before the end.
    const qint64 percent = control.bytes.load(std::memory_order_relaxed) * 100 / total;
    emit progress(int(std::min<qint64>(percent, 99)));
}
