#pragma once
// What every fuzz target shares: the entry point, the choices that an input stands for, the report of a broken rule.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

// Takes one input; always answers 0. A broken rule ends the process (Fuzz::Report), as a sanitizer's report does.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace Fuzz
{
// Prints the line and ends the process, so that the input is kept.
[[noreturn]] void Report(const std::string& what);

inline void Require(bool holds, const char* what)
{
    if (!holds)
        Report(what);
}

// Measures one input. An input that takes more than SLOW_MILLISECONDS of processor time is told, and kept in the folder
// that the variable FUZZ_SLOW names.
class SlowInputWatch
{
public:
    SlowInputWatch(const uint8_t* data, size_t size);
    ~SlowInputWatch();
    SlowInputWatch(const SlowInputWatch&) = delete;
    SlowInputWatch& operator=(const SlowInputWatch&) = delete;

private:
    const uint8_t* m_data;
    size_t m_size;
    double m_start; // milliseconds
};

// An input read as a row of decisions. Every input is one; behind its end every choice is the first.
class Choices
{
public:
    Choices(const uint8_t* data, size_t size) : m_data(data), m_left(size) {}

    bool IsUsedUp() const { return m_left == 0; }

    uint8_t Byte()
    {
        if (m_left == 0)
            return 0;
        --m_left;
        return *m_data++;
    }

    template <typename Number> Number Bits() // any bits at all
    {
        uint8_t bytes[sizeof(Number)];
        for (uint8_t& byte : bytes)
            byte = Byte();
        Number number;
        std::memcpy(&number, bytes, sizeof number);
        return number;
    }

    size_t Below(size_t end) // 0 for 0; two bytes are read above 256
    {
        if (end <= 1)
            return 0;
        const size_t low = Byte();
        return (end <= 256 ? low : low | static_cast<size_t>(Byte()) << 8) % end;
    }

    bool OneIn(size_t count) { return Below(count) + 1 == count; } // never once the input is used up
    template <typename Item, size_t COUNT> const Item& Of(const Item (&list)[COUNT]) { return list[Below(COUNT)]; }

private:
    const uint8_t* m_data;
    size_t m_left;
};
} // namespace Fuzz
