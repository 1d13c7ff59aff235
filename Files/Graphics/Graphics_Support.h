#pragma once
// The module's one header: everything that a runner needs to link and drive it.
//
// What the module needs from its runner. The runner defines all of it:
#include "Files/Buffer/Buffer.h"
#include "Files/Code/Function.h"
#include "Files/Graphics_API/Graphics_API.h"
#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"
#include "Files/Instance/Instance.h"
#include "Files/Javascript/Callable.h"
#include "Files/LLVM/Arrays.h"
#include "Files/LLVM/RValue.h"
#include "Files/LLVM/Ref_Thing.h"
#include "Files/LLVM/Slot_Table.h"
#include "Files/Object/Object.h"
#include "Files/Object/Object_Base.h"
#include "Files/Room/Room.h"
#include "Files/Run/Run_Globals.h"
#include "Files/Script/Script.h"
#include "Platform/Containers.h"
#include "Platform/Lock.h"
#include "Platform/Matrix.h"
#include "Platform/Memory_Manager.h"

// What it gets for it, in reading order: the camera, the registry, the collector's view of a camera, the built-ins;
// then the helpers that need none of these.
#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Camera_Follow.h"
#include "Files/Graphics/Camera_GCProxy.h"
#include "Files/Graphics/Camera_Handle.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Colour.h"
#include "Files/Graphics/Function_Arguments.h"
#include "Files/Graphics/Functions.h"
#include "Files/Graphics/Image_Writers.h"
#include "Files/Graphics/Version.h"
// The matrix reader and writer below serve other parts of the runner.

void SerializeMatrix(kvMatrix* matrix, IBuffer* buffer);   // sixteen floats, 64 bytes, in memory order
void DeSerializeMatrix(kvMatrix* matrix, IBuffer* buffer); // bit for bit what was written
