#include "Runner/App/Options.h"
#include "Runner/Base/Process_Memory.h"

int main(int argc, char** argv)
{
    Runner::TakeFirstMemory();
    return Runner::RunnerMain(argc, argv, stdout, stderr);
}
