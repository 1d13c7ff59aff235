// The program, for hosts that do not bring a main of their own: linkers take it from the library then.

#include "Host_Check/Host_Check.h"

int main(int argc, char** argv) { return HostCheck::Main(argc, argv, HostCheckHooks()); }
