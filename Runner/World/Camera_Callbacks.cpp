#include "Runner/World/Camera_Callbacks.h"

#include "Runner/Host/Convert.h"

namespace Runner
{
bool ScriptNumberOf(const RValue& callback, int& number)
{
    double real = 0.0;
    const bool isNumber = KvKind(callback) != VALUE_OBJECT && NumberOf(callback, real);
    number = isNumber ? NearestInteger<int>(real) : -1; // NaN gives 0, as in KvGetInt32
    return isNumber;
}
} // namespace Runner
