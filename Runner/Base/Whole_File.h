#pragma once
// Whole files, read and written at once.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// Puts a whole file in place: after a crash at any moment the path holds the old file or the new one, never a part.
// False, and why in one line: the old file is then as it was, and nothing else is left behind.
// Uses the name PATH.part beside it; one left there by a crash is replaced.
bool WriteFileAtomically(const std::string& path, const void* data, size_t size, std::string& why);

// Likewise for a file that has been written already, under another name in the same directory. When it fails that one
// is gone.
bool PutFileInPlace(const std::string& from, const std::string& path, std::string& why);

// False, and why in one line, for what is no ordinary file, cannot be read or has more than FILE_SIZE_MAX bytes.
bool ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes, std::string& why);
constexpr size_t FILE_SIZE_MAX = 0x40000000;
} // namespace Runner
