#pragma once
// The registry of built-ins, the conversions of their arguments, and the error report.

#include "Files/LLVM/RValue.h"
#include "Platform/Compiler.h"

#include <cstdint>

class CInstance;

// A built-in. result: the caller's, holds whatever the caller left there. args: at least argc values.
typedef void (*TFunction)(RValue& result, CInstance* self, CInstance* other, int argc, RValue* args);

// argc: the count that the script language shows. Handlers check their counts for themselves.
// From then on scripts call the handler by that name.
void Function_Add(const char* name, TFunction handler, int argc, bool flag);

// Reports a script error. Returns: the handler goes on, and the host raises the error once the handler is back.
CAMERA_PRINTF(1, 2) void KvError(const char* format, ...);

// Conversions of args[index], whatever its kind. NaN gives 0, a number out of range the nearest in range; for a float
// that is the largest one or an infinity, of the number's sign. A value that stands for no number is converted to 0.
int32_t KvGetInt32(const RValue* args, int index);
float KvGetFloat(const RValue* args, int index);
double KvGetReal(const RValue* args, int index);
bool KvGetBool(const RValue* args, int index);
