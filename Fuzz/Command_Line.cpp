// The command line. Input: an argument a line.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/App/Options.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace
{
// What is written to a stream.
class Written
{
public:
    Written() : m_stream(open_memstream(&m_text, &m_size)) {}
    ~Written()
    {
        std::fclose(m_stream);
        std::free(m_text);
    }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;

    FILE* Stream() const { return m_stream; }
    std::string Text() const
    {
        std::fflush(m_stream);
        return {m_text, m_size};
    }

private:
    char* m_text = nullptr;
    size_t m_size = 0;
    FILE* m_stream;
};

std::vector<std::string> Lines(const uint8_t* data, size_t size)
{
    std::vector<std::string> lines = {"runner"};
    const uint8_t *at = data, *const end = data + size;
    while (at != end)
    {
        const uint8_t* const stop = std::find(at, end, '\n');
        lines.push_back(std::string(at, stop).c_str()); // an argument ends at its first zero
        at = stop == end ? end : stop + 1;
    }
    return lines;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    std::vector<std::string> lines = Lines(data, size);
    std::vector<char*> arguments;
    for (std::string& line : lines)
        arguments.push_back(line.data());
    arguments.push_back(nullptr);

    const Written err;
    Runner::RunOptions options;
    const Runner::ParseResult result =
        Runner::ParseOptions(static_cast<int>(lines.size()), arguments.data(), options, err.Stream());
    const std::string said = err.Text();
    const auto lineEnds = std::count(said.begin(), said.end(), '\n');
    if (result == Runner::ParseResult::Wrong)
        Fuzz::Require(lineEnds == 1 && said.back() == '\n', "a mistake is not told in one line");
    else
        Fuzz::Require(said.empty(), "a good command line is commented");
    return 0;
}
