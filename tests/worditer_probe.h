#ifndef WORDITER_PROBE_H
#define WORDITER_PROBE_H

#include "worditer.h"

#include <QList>

// Opens the protected state and operations of wordIter to its tests.
class Probe : public wordIter
{
public:
    using wordIter::calcFirst;
    using wordIter::calcLast;
    using wordIter::refresh;
    using wordIter::wordIter;

    int posAt() const { return pos; }
    QList<int> state() const { return {pos, first, last}; }
    size_t lengthAt() const { return length; }
    const QString& textAt() const { return text; }
    char delimAt() const { return delim; }
};

#endif
