#include "Fuzz/Fuzz_Target.h"

#include "Runner/Base/Hash.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>

namespace Fuzz
{
namespace
{
constexpr double SLOW_MILLISECONDS = 100.0;

// Of this process alone: other programs do not make an input slow.
double ProcessorMilliseconds() { return static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC; }
} // namespace

void Report(const std::string& what)
{
    std::fprintf(stderr, "BROKEN: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

SlowInputWatch::SlowInputWatch(const uint8_t* data, size_t size)
    : m_data(data), m_size(size), m_start(ProcessorMilliseconds())
{
}

SlowInputWatch::~SlowInputWatch()
{
    const double took = ProcessorMilliseconds() - m_start;
    if (took <= SLOW_MILLISECONDS)
        return;
    char name[32];
    std::snprintf(name, sizeof name, "slow-%016llx",
                  static_cast<unsigned long long>(Runner::HashBytes(m_data, m_size)));
    std::fprintf(stderr, "SLOW: %.0f ms, %zu bytes, %s\n", took, m_size, name);
    if (const char* folder = std::getenv("FUZZ_SLOW"))
        std::ofstream(std::string(folder) + "/" + name, std::ios::binary)
            .write(reinterpret_cast<const char*>(m_data), static_cast<std::streamsize>(m_size));
}
} // namespace Fuzz
