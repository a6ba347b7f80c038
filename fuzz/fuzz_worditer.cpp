// libFuzzer target for wordIter: builds iterators from arbitrary text and any
// delimiter, drives them with every operation in arbitrary order and checks
// what must hold in every state. Index checks in QString are asserted here
// (QT_FORCE_ASSERTS), so a read out of range aborts even inside the buffer.
//
// Input: delimiter byte, text up to the first NUL byte (bytes from 0x80 pick
// from `special`), then one byte per operation (see `operations`).
#include "../tests/worditer_probe.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace
{

// Code units that stress simplification, the Latin-1 cut and the surrogate handling.
const char16_t special[16] = {0x0000, 0x00a0, 0x0085, 0x2028, 0x3000, 0x00e9, 0x00ff, 0x0100,
                              0x20ac, 0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfffd, 0x000b, 0x001f};

// Once seen invalid, an iterator may never become valid again.
void check(const Probe& it, const QString& simplified, bool& wasInvalid)
{
    const QString& text = it.textAt();
    const int length = int(it.lengthAt());
    require(text == simplified, "text is not the simplified text");
    require(length == text.size(), "length differs from the text");
    require(it.count() >= 1, "count() below 1");
    for (int i : it.state())
        require(-1 <= i && i < length, "pos, first or last out of range");
    wasInvalid = wasInvalid || !it.isValid();
    require(!(wasInvalid && it.isValid()), "iterator became valid again");

    const QString word = it.current();
    const int pos = it.posAt();
    if (!it.isValid() || pos < 0) {
        require(word.isEmpty(), "current() not empty without a word");
        require(it.isValid() || (it.atFirst() && it.atLast()), "atFirst()/atLast() false");
        return;
    }
    require(it.atFirst() == (pos == it.state()[1]), "atFirst() differs from pos == first");
    require(it.atLast() == (pos == it.state()[2]), "atLast() differs from pos == last");
    // The piece of the text from pos up to the delimiter, cut to Latin-1.
    const QLatin1Char delim(it.delimAt());
    int end = pos;
    while (end < length && text.at(end) != delim)
        ++end;
    require(word.size() == end - pos, "current() has the wrong length");
    for (int i = pos; i < end; ++i)
        require(word.at(i - pos) == QChar::fromLatin1(text.at(i).toLatin1()),
                "current() is not a piece of the text");
}

// A walk of operator++ ends, however it starts: pos grows on every step that succeeds.
void walkToEnd(Probe it)
{
    for (int steps = 0, pos = it.posAt(); ++it; pos = it.posAt()) {
        require(it.posAt() > pos, "operator++ did not move forward");
        require(++steps <= int(it.lengthAt()) + 2, "walk did not end");
    }
}

const char operations[] = "+cnfld=rFLRw";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const char delim = char(data[0]);
    QString original;
    size_t i = 1;
    for (; i < size && data[i]; ++i)
        original += data[i] < 0x80 ? QChar(data[i]) : QChar(special[data[i] & 15]);
    const QString simplified = original.simplified();
    const uint8_t* ops = data + i;
    const size_t opCount = std::min<size_t>(size - i, 256);

    Probe it(original, delim), other(it);
    bool itInvalid = false, otherInvalid = false;
    size_t k = 0;
    // In the order of `operations`.
    const std::function<void()> run[] = {
        [&] { require(!++it || it.posAt() >= 0, "true step without a word"); },
        [&] { it.current(); },
        [&] { it.count(); },
        [&] { it.toFirst(); },
        [&] { it.toLast(); },
        [&] { it.setDelim(k + 1 < opCount ? char(ops[++k]) : delim); },
        [&] {
            other = it;
            otherInvalid = itInvalid;
        },
        [&] {
            it = Probe(original, it.delimAt());
            itInvalid = false;
        },
        [&] { it.calcFirst(); },
        [&] { it.calcLast(); },
        [&] { it.refresh(); },
        [&] { walkToEnd(it); },
    };
    static_assert(sizeof run / sizeof run[0] == sizeof operations - 1);

    check(it, simplified, itInvalid);
    walkToEnd(it);
    for (; k < opCount; ++k) {
        const char* named = ops[k] ? std::strchr(operations, ops[k]) : nullptr;
        run[named ? named - operations : ops[k] % (sizeof operations - 1)]();
        check(it, simplified, itInvalid);
        check(other, simplified, otherInvalid);
    }
    walkToEnd(it);
    return 0;
}
