#pragma once

#include "blockviewsearch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <condition_variable>
#include <mutex>
#include <thread>

// Runs a search of a block's text in a thread of its own, so that the window
// goes on while it runs. One search at a time: a new one stops the last.
// The text must not change until the search ends or stop() returns.
class BlockViewFinder : public QObject
{
    Q_OBJECT

public:
    // A search that takes longer reports its progress.
    static constexpr int quietMs = 500;

    explicit BlockViewFinder(QObject* parent = nullptr);
    ~BlockViewFinder() override;

    // Waits a moment for the search, so that a quick one reports before
    // this returns, as if it ran here.
    void start(const BlockText& text, const QString& needle, Qt::CaseSensitivity cs, qsizetype line,
               qsizetype column, bool backward);
    // Stops the search, if one runs, and waits for its thread: it reports nothing.
    void stop();
    bool isRunning() const { return worker.joinable(); }

signals:
    void found(const BlockViewSearch::Hit& hit); // line -1: not found
    void progress(int percent);

private:
    void finish();
    void tick();

    std::thread worker;
    BlockViewSearch::Progress control;
    std::mutex mutex;
    std::condition_variable ended;
    bool done = false;        // guarded by mutex
    BlockViewSearch::Hit hit; // guarded by mutex
    quint64 generation = 0;   // a report from an older search is dropped
    qint64 total = 1;         // bytes to search
    QElapsedTimer clock;
    QTimer ticker;
};
