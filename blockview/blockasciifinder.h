#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>

// Finds a string of ASCII in plain ASCII text at the speed of memory: a first
// pass compares the string's first and last bytes with sixteen places at
// once, and only where both agree is the whole string compared.
class BlockAsciiFinder
{
public:
    BlockAsciiFinder() = default; // finds nothing
    // foldCase: the case of letters does not count; tabAsBlank: a blank and a
    // tab match each other.
    BlockAsciiFinder(const QByteArray& key, bool foldCase, bool tabAsBlank);

    bool isEmpty() const { return key.isEmpty(); }
    qsizetype size() const { return key.size(); }
    // The first match starting at or after from; -1 when none.
    qsizetype indexIn(QByteArrayView text, qsizetype from) const;
    // The last match starting at or before from; -1 when none.
    qsizetype lastIndexIn(QByteArrayView text, qsizetype from) const;

private:
    // A byte b matches when (b | lowered) == value or b == other.
    struct Probe {
        unsigned char value = 0;
        unsigned char lowered = 0;
        unsigned char other = 0;
    };
    Probe probe(char c) const;
    unsigned candidates(const char* at) const;
    bool matchesAt(const char* at) const;

    QByteArray key; // as compared: folded
    std::array<char, 256> fold{};
    Probe first, last;
};
