// A host that uses run-time types: it derives from the interfaces' classes and asks objects what they are.
#include <Files/Graphics/Graphics_Support.h>

#include <typeinfo>

namespace
{
class Handle : public COwnedObject
{
public:
    ~Handle() override { ++s_freed; }
    static int s_freed;
};
int Handle::s_freed = 0;

class Struct : public KvObjectBase
{
public:
    Struct() : KvObjectBase(0, OBJECT_VARIABLE_MASK) {}
};
} // namespace

// 0 when what a value owns is freed, and the types of objects are known.
int main()
{
    COwnedObject* const owned = new Handle;
    bool isRight = dynamic_cast<Handle*>(owned) != nullptr;
    RValue value = {};
    value.kind = VALUE_PTR;
    value.flags = VALUE_FLAG_OWNS_PTR;
    value.ptr = owned;
    FREE_RValue__Pre(&value);
    isRight = isRight && Handle::s_freed == 1;

    Struct object;
    KvObjectBase& base = object;
    return isRight && typeid(base) == typeid(Struct) ? 0 : 1;
}
