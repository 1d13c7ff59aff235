// The benchmarks in the real Runner.

#include "Benchmarks/Bench.h"
#include "Runner/Host/Files.h"

#include <cstdlib>
#include <filesystem>

namespace
{
// Where the image rows write their files, for as long as the program runs.
class SaveArea
{
public:
    SaveArea() : m_path((std::filesystem::temp_directory_path() / "camera_bench-XXXXXX").string())
    {
        Bench::Require(mkdtemp(m_path.data()) != nullptr, "a folder for files");
        Runner::SetSaveArea(m_path);
    }
    ~SaveArea()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

private:
    std::string m_path;
};
} // namespace

int main(int argc, char** argv)
{
    static const SaveArea area; // static: also for a check that ends the program
    return Bench::Run(argc, argv, {Bench::MATRICES, Bench::REGISTRY, Bench::STATE, Bench::IMAGES, Bench::RUNNER});
}
