#include "blockasciifinder.h"

#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace
{

constexpr qsizetype width = 16; // places compared at once
using Lanes = unsigned char __attribute__((vector_size(width)));

Lanes load(const char* at)
{
    Lanes v;
    std::memcpy(&v, at, sizeof v);
    return v;
}

// One bit for each lane, from its top bit.
unsigned bitsOf(Lanes v)
{
#ifdef __SSE2__
    return unsigned(_mm_movemask_epi8(__m128i(v)));
#else
    unsigned bits = 0;
    for (int i = 0; i < width; ++i)
        bits |= unsigned(v[i] >> 7) << i;
    return bits;
#endif
}

int topBit(unsigned bits)
{
    return 31 - __builtin_clz(bits);
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

} // namespace

BlockAsciiFinder::BlockAsciiFinder(const QByteArray& sought, bool foldCase, bool tabAsBlank)
{
    for (int c = 0; c < 256; ++c) {
        const bool upper = foldCase && c >= 'A' && c <= 'Z';
        fold[size_t(c)] = char(upper ? c + ('a' - 'A') : c);
    }
    if (tabAsBlank)
        fold['\t'] = ' ';
    key = sought;
    for (char& c : key)
        c = fold[quint8(c)];
    if (key.isEmpty())
        return;
    first = probe(key.front());
    last = probe(key.back());
}

BlockAsciiFinder::Probe BlockAsciiFinder::probe(char c) const
{
    Probe p;
    p.value = quint8(c);
    p.other = quint8(c);
    // A letter's two cases differ in one bit.
    if (isLetter(c) && fold['A'] != 'A')
        p.lowered = 'a' - 'A';
    if (c == ' ' && fold['\t'] == ' ')
        p.other = '\t';
    return p;
}

// One bit for each of the sixteen places from at where both the first and
// the last byte agree.
unsigned BlockAsciiFinder::candidates(const char* at) const
{
    const Lanes head = load(at);
    const Lanes tail = load(at + key.size() - 1);
    const Lanes hits = Lanes((head | first.lowered) == first.value) | Lanes(head == first.other);
    return bitsOf(hits & (Lanes((tail | last.lowered) == last.value) | Lanes(tail == last.other)));
}

bool BlockAsciiFinder::matchesAt(const char* at) const
{
    for (qsizetype i = 0; i < key.size(); ++i)
        if (fold[quint8(at[i])] != key[i])
            return false;
    return true;
}

qsizetype BlockAsciiFinder::indexIn(QByteArrayView text, qsizetype from) const
{
    const qsizetype lastStart = text.size() - key.size();
    if (key.isEmpty())
        return -1;
    const char* data = text.data();
    qsizetype at = std::max<qsizetype>(from, 0);
    for (; at + width - 1 <= lastStart; at += width)
        for (unsigned bits = candidates(data + at); bits; bits &= bits - 1) {
            const qsizetype found = at + __builtin_ctz(bits);
            if (matchesAt(data + found))
                return found;
        }
    for (; at <= lastStart; ++at)
        if (matchesAt(data + at))
            return at;
    return -1;
}

qsizetype BlockAsciiFinder::lastIndexIn(QByteArrayView text, qsizetype from) const
{
    if (key.isEmpty())
        return -1;
    const char* data = text.data();
    // at: the first of sixteen places ending at the last start allowed.
    qsizetype at = std::min(from, text.size() - key.size()) - width + 1;
    for (; at >= 0; at -= width)
        for (unsigned bits = candidates(data + at); bits; bits ^= 1u << topBit(bits)) {
            const qsizetype found = at + topBit(bits);
            if (matchesAt(data + found))
                return found;
        }
    for (qsizetype found = at + width - 1; found >= 0; --found)
        if (matchesAt(data + found))
            return found;
    return -1;
}
