#pragma once

#include <cstdint>

// How ZEB2MTX lays out the report of each block: the leading lines that
// come before the data, and the columns of a data line. The browser reads
// only headerLines; the columns are the format's only record.
struct BlockLayout {
    std::int32_t columnCount;     // at most 7
    std::int32_t headerLines;     // leading lines before the data
    std::int32_t columnWidths[7]; // in characters; 0 behind columnCount
    const char* columnTitles[7];  // null where the block has none
};

// Row n - 1 describes block n; block 5 does not exist and is all zeros.
constexpr int blockLayoutCount = 29;
extern const BlockLayout blockLayouts[blockLayoutCount];
