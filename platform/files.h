#pragma once

#include <cstddef>
#include <string>

namespace platform
{

// Replaces the file at path by bytes, whole or not at all: the bytes go into
// a new file beside it, which takes the name only once everything has been
// written, flushed to disk and closed. A symbolic link of that name is
// replaced, never followed. A file the user may not write (read-only,
// immutable) is refused as opening it would be; one that is replaced keeps
// its mode. False, with the system's reason in error ("No
// space left on device") and the old file as it was, otherwise.
bool replaceFile(const std::string& path, const std::string& bytes, std::string& error);

// Reads a file whole, at most max bytes, with no descriptor left for the
// programs started meanwhile. False, with the reason in error, otherwise.
bool readFile(const std::string& path, std::size_t max, std::string& bytes, std::string& error);

// The working directory's path, also when it has been deleted (then
// deleted is set) or cannot be named any more.
std::string workingDirectory(bool* deleted = nullptr);

// Opens an ordinary file for reading, never a FIFO, a device or a directory
// (a link is followed to what it names): the descriptor, or with the reason
// -1 when it cannot be opened and -2 when it is no ordinary file. The open
// itself never waits for a writer.
int openRegularFile(const std::string& path, std::string& reason);

// Opens /dev/null on each of descriptors 0, 1 and 2 that is closed, so that
// the first file the program opens cannot take one of them and receive what
// was meant for a standard stream. Called first thing in main.
void guardStandardDescriptors();

} // namespace platform
