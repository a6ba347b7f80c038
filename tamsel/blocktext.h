#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// The text of one block page, held compactly: the lines' bytes (UTF-8, no
// line ends) back to back, and where each line starts. A million-line
// report costs its size in bytes plus a few bytes a line.
class BlockText
{
public:
    BlockText() = default;
    // A short text, split at its line feeds; a final line feed ends the last
    // line rather than starting an empty one.
    static BlockText fromString(const QString& text);

    // Room for this many bytes, so that appending does not reallocate.
    void reserve(qsizetype bytes);
    // One line, without its line end.
    void appendLine(const char* data, qsizetype size);

    qsizetype lineCount() const;
    qsizetype byteCount() const;
    QByteArray lineBytes(qsizetype line) const;
    QString line(qsizetype line) const;
    // Every line followed by a line feed.
    QString toString() const;
};
