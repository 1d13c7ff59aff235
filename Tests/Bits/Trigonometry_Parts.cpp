// Prints what the module's sine, cosine and arc cosine answer over parts of all floats, as hashes.
//
//   trigonometry_parts PART...     parts in hexadecimal (Tests/Support/Trigonometry_Hashes.h)
//
// The lines are those of Tests/Golden/trigonometry.txt where the answers are the device's.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Trigonometry_Hashes.h"

#include <cstdlib>

using namespace Trigonometry;

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
    {
        const unsigned part = static_cast<unsigned>(std::strtoul(argv[i], nullptr, 16)) % PARTS;
        std::printf("%03x %08x %08x %08x\n", part, HashPart(part, GR_Sin), HashPart(part, GR_Cos),
                    HashPart(part, GR_Acos));
    }
    return 0;
}
