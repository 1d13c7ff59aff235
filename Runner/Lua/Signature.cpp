#include "Runner/Lua/Signature.h"

namespace Runner
{
namespace
{
std::string ListOf(const Signature& signature)
{
    std::string list;
    for (int i = 0; i < signature.Most(); ++i)
    {
        list += i == signature.least ? (i > 0 ? " [, " : "[") : (i > 0 ? ", " : "");
        list += signature.arguments[static_cast<size_t>(i)];
    }
    return signature.Most() > signature.least ? list + "]" : list;
}

std::string CountOf(const Signature& signature)
{
    if (signature.Most() == 0)
        return "none";
    const std::string most = std::to_string(signature.Most());
    return signature.least == signature.Most() ? most : std::to_string(signature.least) + " to " + most;
}
} // namespace

std::string Signature::Text() const
{
    const bool takesFields = Most() == 1 && arguments[0] == std::string(FIELDS_ARGUMENT);
    return name + (takesFields ? "{...}" : "(" + ListOf(*this) + ")");
}

std::string Signature::Argument(int i) const
{
    const std::string text = std::string(name) + ": argument " + std::to_string(i);
    return i >= 1 && i <= Most() ? text + " (" + arguments[static_cast<size_t>(i) - 1] + ")" : text;
}

std::string Signature::Wanted(int got) const
{
    const std::string list = Most() == 0 ? "" : ": " + ListOf(*this);
    return "(" + CountOf(*this) + " wanted" + list + "; got " + std::to_string(got) + ")";
}
} // namespace Runner
