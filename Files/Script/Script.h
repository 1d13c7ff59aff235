#pragma once

#include "Files/LLVM/RValue.h"

class CInstance;
struct DynamicArrayOfRValue;

// Runs the script of that index. False when there is none; errors inside it are the host's to report.
bool Script_Perform(int index, CInstance* self, CInstance* other, int argc, RValue* result, DynamicArrayOfRValue* args);
