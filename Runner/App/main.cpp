#include "Runner/App/Options.h"

int main(int argc, char** argv) { return Runner::RunnerMain(argc, argv, stdout, stderr); }
