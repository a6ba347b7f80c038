// libFuzzer target for wordIter: builds iterators from arbitrary text and any
// delimiter, drives them with every operation in arbitrary order and checks
// what must hold in every state. Index checks in QString are asserted here
// (QT_FORCE_ASSERTS), so a read out of range aborts even inside the buffer.
//
// Input: delimiter byte, text mode byte, text up to the first NUL byte, then
// one byte per operation (see `operations`).
#include "worditer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{

void require(bool ok, const char* what)
{
    if (!ok) {
        std::fprintf(stderr, "worditer fuzz: %s\n", what);
        std::abort();
    }
}

class Probe : public wordIter
{
public:
    Probe(const QString& text, char delim) : wordIter(text, delim) {}
    int posAt() const { return pos; }
    const QString& textAt() const { return text; }
    size_t lengthAt() const { return length; }
    char delimAt() const { return delim; }
    void callCalcFirst() { calcFirst(); }
    void callCalcLast() { calcLast(); }
    void callRefresh() { refresh(); }

    // Set once the iterator was seen invalid: it may never become valid again.
    bool wasInvalid = false;
};

// Code units that stress simplification, the Latin-1 cut and the surrogate handling.
const char16_t special[16] = {0x0000, 0x00a0, 0x0085, 0x2028, 0x3000, 0x00e9, 0x00ff, 0x0100,
                              0x20ac, 0xd800, 0xdbff, 0xdc00, 0xdfff, 0xfffd, 0x000b, 0x001f};

QString makeText(char mode, const char* bytes, size_t size)
{
    switch (mode) {
    case 'u':
        return QString::fromUtf8(bytes, qsizetype(size));
    case 'l':
        return QString::fromLatin1(bytes, qsizetype(size));
    default: {
        QString text;
        for (size_t i = 0; i < size; ++i) {
            const auto b = uchar(bytes[i]);
            text += b < 0x80 ? QChar(b) : QChar(special[b & 15]);
        }
        return text;
    }
    }
}

void check(Probe& it, const QString& simplified)
{
    const QString& text = it.textAt();
    const int length = int(it.lengthAt());
    require(text == simplified, "text is not the simplified text");
    require(length == text.size(), "length differs from the text");
    require(it.count() >= 1, "count() below 1");

    if (!it.isValid())
        it.wasInvalid = true;
    require(!(it.wasInvalid && it.isValid()), "iterator became valid again");

    const QString word = it.current();
    if (!it.isValid()) {
        require(word.isEmpty(), "current() not empty while invalid");
        require(it.atFirst() && it.atLast(), "atFirst()/atLast() false while invalid");
        return;
    }
    const int pos = it.posAt();
    if (pos < 0 || pos >= length) {
        require(word.isEmpty(), "current() not empty off the text");
        return;
    }
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
void walkToEnd(const Probe& from)
{
    Probe it(from);
    int steps = 0;
    int pos = it.posAt();
    while (++it) {
        require(it.posAt() > pos, "operator++ did not move forward");
        pos = it.posAt();
        require(++steps <= int(it.lengthAt()) + 2, "walk did not end");
    }
}

const char operations[] = "+cnfld=xrFLRw";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const char delim = char(data[0]);
    const char mode = char(data[1]);
    const char* rest = reinterpret_cast<const char*>(data + 2);
    size_t restSize = size - 2;
    const void* nul = std::memchr(rest, 0, restSize);
    const size_t textSize = nul ? size_t(static_cast<const char*>(nul) - rest) : restSize;

    const QString original = makeText(mode, rest, textSize);
    const QString simplified = original.simplified();
    const uint8_t* ops = data + 2 + textSize;
    const size_t opCount = std::min<size_t>(size - 2 - textSize, 256);

    Probe it(original, delim);
    Probe other(original, delim);
    check(it, simplified);
    walkToEnd(it);

    for (size_t i = 0; i < opCount; ++i) {
        const uint8_t b = ops[i];
        const char* named = b ? std::strchr(operations, b) : nullptr;
        const int op = named ? int(named - operations) : b % (sizeof operations - 1);
        switch (op) {
        case 0:
            if (++it)
                require(it.posAt() >= 0, "true step without a word");
            break;
        case 1:
            it.current();
            break;
        case 2:
            it.count();
            break;
        case 3:
            it.toFirst();
            break;
        case 4:
            it.toLast();
            break;
        case 5:
            it.setDelim(i + 1 < opCount ? char(ops[++i]) : delim);
            break;
        case 6:
            other = it;
            break;
        case 7: {
            Probe swap(it);
            it = other;
            other = swap;
            break;
        }
        case 8:
            it = Probe(original, it.delimAt());
            break;
        case 9:
            it.callCalcFirst();
            break;
        case 10:
            it.callCalcLast();
            break;
        case 11:
            it.callRefresh();
            break;
        default:
            walkToEnd(it);
            break;
        }
        check(it, simplified);
        check(other, simplified);
    }
    walkToEnd(it);
    return 0;
}
