#ifndef WORDITER_H
#define WORDITER_H

#include "worditer_export.h"

#include <QRegularExpression>
#include <QString>

#include <cstddef>

// Walks the words of a text. A word runs from a word character up to the next
// delimiter; which characters may begin a word depends on the delimiter, one
// of blank ( ) , . / : = [ ]. Any other delimiter leaves the iterator invalid.
//
//     wordIter it(text, ' ');
//     if (it.isValid())
//         do
//             use(it.current());
//         while (++it);
//
// The step off the last word makes the iterator invalid for good; a fresh walk
// needs a fresh iterator.
//
// Empty text gives pos, first and last -1 and length 0. A search for the first
// or last word that gives up leaves first or last as it was, else -1. current()
// gives a lone surrogate, like any character past Latin-1, as the character 0.
class WORDITER_EXPORT wordIter
{
public:
    wordIter(const QString& text, char delim);
    wordIter(const wordIter& other);
    ~wordIter();
    wordIter& operator=(const wordIter& other);

    bool operator++();
    QString current() const;
    size_t count() const;
    bool isValid() const;
    bool atFirst() const;
    bool atLast() const;
    void toFirst();
    void toLast();
    void setDelim(char delim);

protected:
    void init(char delim);
    void refresh();
    void calcFirst();
    void calcLast();

    int pos;
    int first;
    int last;
    size_t length;
    QString text;
    char delim;
    QRegularExpression rx;
    bool valid;
};

#endif
