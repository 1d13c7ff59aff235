#pragma once
// Archives in the zip format, read from memory into memory: a game that somebody hands on.

#include "Runner/Base/Packed_Files.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Runner
{
// What an archive may hold at most: an archive of a few bytes can claim to hold any amount.
struct ZipLimits
{
    size_t files = 4096;
    size_t bytes = size_t{256} << 20; // of all files together, unpacked
};

// Reads all files of an archive; folders are left out, since names tell them. Files are stored or deflated. False, and
// why in one line without the archive's name, when anything is damaged or beyond the limits, or when a name leads out
// of the archive (absolute, or with ".." in it), stands there twice, or is of a link or an encrypted file. `files` is
// then empty.
bool ReadZip(const std::vector<uint8_t>& archive, const ZipLimits& limits, FileContents& files, std::string& why);
} // namespace Runner
