// Handlers that forward to the host's view accessors. The accessors check; these do not.
#include "Files/Graphics/Functions.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Values.h"
#include "Files/Room/Room.h"

using namespace CameraModule;

namespace
{

typedef bool (*Accessor)(CInstance* self, int view, RValue* value);

void GetProperty(Accessor accessor, RValue& result, CInstance* self, const RValue* args)
{
    accessor(self, KvGetInt32(args, 0), &result);
}

// Sets a property of a view. The new value is passed as a real, whatever the property; it is converted before the view
// number.
void SetProperty(Accessor accessor, CInstance* self, const RValue* args)
{
    RValue value = RealValue(KvGetReal(args, 1));
    const int view = KvGetInt32(args, 0);
    accessor(self, view, &value);
}

} // namespace

void F_ViewGetCamera(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewCamera, result, self, args);
}

void F_ViewGetVisible(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewVisible, result, self, args);
}

void F_ViewGetXport(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewXport, result, self, args);
}

void F_ViewGetYport(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewYport, result, self, args);
}

void F_ViewGetWport(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewWport, result, self, args);
}

void F_ViewGetHport(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewHport, result, self, args);
}

void F_ViewGetSurfaceId(RValue& result, CInstance* self, CInstance*, int, RValue* args)
{
    GetProperty(GV_ViewSurfaceID, result, self, args);
}

void F_ViewSetCamera(RValue&, CInstance* self, CInstance*, int, RValue* args)
{
    SetProperty(SV_ViewCamera, self, args);
}

void F_ViewSetVisible(RValue&, CInstance* self, CInstance*, int, RValue* args)
{
    SetProperty(SV_ViewVisible, self, args);
}

void F_ViewSetXport(RValue&, CInstance* self, CInstance*, int, RValue* args) { SetProperty(SV_ViewXport, self, args); }

void F_ViewSetYport(RValue&, CInstance* self, CInstance*, int, RValue* args) { SetProperty(SV_ViewYport, self, args); }

void F_ViewSetWport(RValue&, CInstance* self, CInstance*, int, RValue* args) { SetProperty(SV_ViewWport, self, args); }

void F_ViewSetHport(RValue&, CInstance* self, CInstance*, int, RValue* args) { SetProperty(SV_ViewHport, self, args); }

void F_ViewSetSurfaceId(RValue&, CInstance* self, CInstance*, int, RValue* args)
{
    SetProperty(SV_ViewSurfaceID, self, args);
}
