#pragma once
// Whole files, read and written at once.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// How the names of temporary files end.
constexpr char PART_FILE_END[] = ".part";

// Writes a whole file by an atomic rename: after a crash at any moment the path holds the old file or the new one,
// never a part. On failure false, and why in one line; the old file is then unchanged, and nothing else is left behind.
// The temporary file is PATH.part in the same directory; one left there by a crash is replaced.
bool WriteFileAtomically(const std::string& path, const void* data, size_t size, std::string& why);

// Checks that a file of that name can be put in place, as far as that can be known. Leaves nothing behind. False, and
// why in one line.
bool TryToWriteFile(const std::string& path, std::string& why);

// Renames a file that has been written already, in the same directory, with the same guarantees. On failure `from` is
// removed.
bool PutFileInPlace(const std::string& from, const std::string& path, std::string& why);

// Reads a whole file, of the disk or of a packed folder. False, and why in one line, when it is no regular file, cannot
// be read or has more than FILE_SIZE_MAX bytes.
bool ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes, std::string& why);
constexpr size_t FILE_SIZE_MAX = 0x40000000;

// Reads the first `wanted` bytes of a file of the disk, or all of one that has fewer. False, and why in one line.
bool ReadFileStart(const std::string& path, size_t wanted, std::vector<uint8_t>& bytes, std::string& why);
} // namespace Runner
