#!/bin/sh
# The seam between the module and its host, read from the archive's symbol table.
#
#   archive_symbols.sh NM ARCHIVE
#
# Each host name below must be undefined in the archive and never defined: a second definition would silently replace
# the host's. Each module name must be defined, the last three weakly, so that a host may bring its own. Any other name
# that a host could collide with is an error: internal names are local to their source or stand in CameraModule.
# Nothing may pull in exceptions or run-time type information, nor a function whose last bit is the C library's own
# choice.
nm=$1
archive=$2
table=$("$nm" -C "$archive") || exit 2
table=$(printf '%s\n' "$table" | sed -n 's/^[0-9a-f ]* \([A-Za-z]\) /\1 /p') # LETTER NAME
failures=0

complain()
{
    echo "$archive: $1" >&2
    failures=$((failures + 1))
}

# has LETTERS NAME: a symbol of one of these nm letters that is NAME or a function NAME(...).
has() { printf '%s\n' "$table" | grep -qE "^($1) $2(\(.*)?$"; }

DEFINED='[A-TV-Zuv]|[a-tw-z]' # every letter but U and the weak undefined w

host='Array_DecRef Array_IncRef Array_SetOwner ARRAY_RefAlloc AddGCRefRValue AddGlobalObject RemoveGlobalObject
CGCGeneration::UpdateRange CInstance::CInstance CInstance::Compute_BoundingBox CInstance::ms_ID2Instance Call_RValue
Current_Object DeterminePotentialRoot EnsureDirectoryIsCreated Function_Add GetContextStackTop PushContextStack
PopContextStack GetNewObjGCGen Graphics::SetMatrix IBuffer::Write IBuffer::ReadS32 IBuffer::ReadFloat IBuffer::ReadBool
JS_IsCallable_Object KvError KvFree KvRealloc KvGetFloat KvGetInt32 KvGetReal KvObjectBase::KvObjectBase
KvObjectBase::FreeVars LOCK_RVALUE_MUTEX UNLOCK_RVALUE_MUTEX LoadSave::_GetSaveFileName LoadSave::fopen
LoadSave::fwrite LoadSave::fclose MemoryManager::Alloc MemoryManager::ReAlloc MemoryManager::Free Run_Room
Script_Perform SetViewExtents dbg_csol g_DefaultCameraID g_DummyObjectIndex g_GCGens g_GCrangestart g_GCrangeend
g_ObjectHash g_RenderTargetActive g_ViewAreaA g_ViewAreaH g_ViewAreaW g_ViewAreaX g_ViewAreaY g_fGarbageCollection
g_fIsJSProject g_pGlobal g_slotObjects kvMatrix::LookAtLH kvMatrix::Multiply kvMatrix::OrthoLH kvMatrix::PerspectiveLH
KvHash<CInstance>::Find KvHash<CObject>::Find
GV_ViewCamera GV_ViewHport GV_ViewSurfaceID GV_ViewVisible GV_ViewWport GV_ViewXport GV_ViewYport
SV_ViewCamera SV_ViewHport SV_ViewSurfaceID SV_ViewVisible SV_ViewWport SV_ViewXport SV_ViewYport'
for name in $host; do
    has "$DEFINED" "$name" && complain "defines the host's $name"
    has U "$name" || complain "does not use the host's $name"
done

module='g_CM CreateBMP WritePNG32 SerializeMatrix DeSerializeMatrix ValidateValidScriptValue kvMatrix::Invert
ConvertAlpha GR_Acos GR_RGBA_To_D3DColor GR_Color_To_D3DColor GR_D3DColor_Change_Alpha GR_D3DColor_To_Color GR_Color_Merge
F_CameraSetView'
for name in $module; do
    has '[TBD]' "$name" || complain "does not define $name"
done
for name in g_undefined CCameraManager::SetInitialLoadHighPoint CCameraManager::GetScriptInstance; do
    has '[WVu]' "$name" || complain "does not define $name weakly"
done

# What else may be visible: the module's classes and handlers, the inline functions of the interface headers, the
# module's own namespace, and what the standard library and the sanitizers leave in every archive.
classes='CCamera|CFollowAxis|CCameraManager|CCameraHandle|Camera_GCProxy|COwnedObject|_RefThing<char const\*>|CameraModule'
inline_functions='GR_SinCos GR_Sin GR_Cos KvKind KvNeedsRelease FREE_RValue__Pre COPY_RValue_do__Post KvAssign'
allowed="($classes)::.*|vtable for (Camera_GCProxy|COwnedObject)|F_(Camera|View)[A-Za-z]*\(.*|CCamera\*\* KvGrowTable<.*"
for name in $module $inline_functions g_undefined; do allowed="$allowed|$name(\(.*)?"; done
standard='_ZN?K?St|_ZNK?9__gnu_cxx|_ZNK?6__pstl|_Zn[wa][jmy]Pv|__odr_asan'
mangled=$(mktemp) && demangled=$(mktemp) || exit 2
trap 'rm -f "$mangled" "$demangled"' EXIT
"$nm" -p --defined-only --extern-only "$archive" | sed -n 's/^[0-9a-f]* *[A-Za-z] //p' >"$mangled"
"$nm" -p -C --defined-only --extern-only "$archive" | sed -n 's/^[0-9a-f]* *[A-Za-z] //p' >"$demangled"
unlisted=$(paste "$mangled" "$demangled" | grep -vE "^($standard)" | cut -f 2 | grep -vxE "$allowed" | sort -u)
[ -z "$unlisted" ] || complain "defines names that are not listed:
$unlisted"

handlers=$(printf '%s\n' "$table" | grep -cE '^T F_(Camera|View)[A-Za-z]*\(')
[ "$handlers" -eq 48 ] || complain "has $handlers handlers, not 48"
for name in __cxa_throw __gxx_personality_v0 __dynamic_cast; do
    has U "$name" && complain "uses $name: exceptions or run-time types"
done
for name in sin cos sincos tan asin acos atan atan2 exp log pow hypot fma; do # compilers join sinf and cosf in sincosf
    has U "${name}f?" && complain "uses $name or ${name}f: Files/Graphics/Trigonometry.h has the same bits everywhere"
done
[ "$failures" -eq 0 ]
