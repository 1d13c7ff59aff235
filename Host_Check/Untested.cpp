// The sentences of the interface headers that no check tests, each with the reason. A test holds this table and the
// checks against the headers: a sentence that stands in neither is noticed.

#include "Host_Check/Host_Check.h"

namespace HostCheck
{
namespace
{

constexpr char EXPLAINS[] = "says what a thing is, and promises nothing";
constexpr char THE_HEADER[] = "the declarations keep it";
constexpr char THE_MODULE[] = "the module's own promise, kept by its sources or inline in the header";
constexpr char A_FREEDOM[] = "leaves the host a choice";
constexpr char GAME_DATA[] = "a field of the game's data, which the host hands over as it stands there";

constexpr Untested UNTESTED[] = {
    {"Files/Buffer/Buffer.h", "All operations are the host's.", THE_HEADER},
    {"Files/Buffer/Buffer.h", "nobody deletes a buffer through this interface", THE_HEADER},
    {"Files/Code/Function.h", "argc: the count that the script language shows.", EXPLAINS},
    {"Files/Code/Function.h",
     "A built-in. result: the caller's, holds whatever the caller left there. args: at least argc values.",
     "the host's calls of built-ins, which the check cannot make in its place"},
    {"Files/Code/Function.h", "Handlers check their counts for themselves.", THE_MODULE},
    {"Files/Graphics_API/Graphics_API.h",
     "The graphics layer's matrix slots and what it knows of the view being drawn.", EXPLAINS},
    {"Files/Graphics_API/Graphics_API.h",
     "The visible part of the room: left, top, width, height in room units, and its rotation in degrees [0, 360].",
     THE_MODULE},
    {"Files/IO/Debug_Console.h", "Where the runner prints what a developer should see.", EXPLAINS},
    {"Files/IO/Load_Save.h", "an open file; opaque here", EXPLAINS},
    {"Files/Instance/Instance.h", "One thing in a room.", EXPLAINS},
    {"Files/Instance/Instance.h", "All operations are the host's.", THE_HEADER},
    {"Files/LLVM/Arrays.h",
     "The host's counted arrays, and the context stack that tells it who owns a value being stored.", EXPLAINS},
    {"Files/LLVM/Arrays.h", "the argument array of a script; opaque here", EXPLAINS},
    {"Files/LLVM/RValue.h", "The script value, and the rules by which values are copied and released.", EXPLAINS},
    {"Files/LLVM/RValue.h", "a result that nobody has written yet", THE_HEADER},
    {"Files/LLVM/RValue.h", "flags: a VALUE_PTR owns its COwnedObject", THE_MODULE},
    {"Files/LLVM/RValue.h", "A counted array.", EXPLAINS},
    {"Files/LLVM/RValue.h", "the object that may write to it without a copy; the host's",
     "the host's alone; the module never reads it"},
    {"Files/LLVM/RValue.h", "Host.", EXPLAINS},
    {"Files/LLVM/RValue.h", "The module calls none of these.", THE_MODULE},
    {"Files/LLVM/RValue.h", "the one shared VALUE_UNDEFINED.", THE_MODULE},
    {"Files/LLVM/RValue.h", "Module, weak.", THE_MODULE},
    {"Files/LLVM/RValue.h", "Anything that a VALUE_PTR may own.", EXPLAINS},
    {"Files/LLVM/RValue.h",
     "The destructor is inline so that hosts built with run-time type information can derive from it although the "
     "module is built without.",
     THE_HEADER},
    {"Files/LLVM/Ref_Thing.h", "A counted record around a thing: the text behind a string value.", EXPLAINS},
    {"Files/LLVM/Ref_Thing.h", "runs at count 0, leaves -1 and frees nothing more", THE_MODULE},
    {"Files/LLVM/Ref_Thing.h", "Drops one reference; the last one frees the text and the record.", THE_MODULE},
    {"Files/LLVM/Ref_Thing.h", "The lock is taken again by the record's destructor.", THE_MODULE},
    {"Files/LLVM/Slot_Table.h",
     "A table of objects by slot, shared by the host and by whoever puts objects into it (Camera_GCProxy).", EXPLAINS},
    {"Files/LLVM/Value_Ownership.h", "Ownership of values: release, copy and assignment.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "Included by RValue.h.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "A value of kind string, array or object refers to something shared.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h",
     "Whoever stores such a value takes a reference of its own; whoever overwrites one releases the old reference "
     "first.",
     THE_MODULE},
    {"Files/LLVM/Value_Ownership.h",
     "Objects are not counted: the collector learns of a new reference from DeterminePotentialRoot.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "True for strings, arrays and objects.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h",
     "Looks at five bits of the kind only: 0x21 passes for a string here, while the release and the copy, which look "
     "at 24, do nothing to it.",
     THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "Releases what the value refers to.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "Fields other than a string's pointer are left as they were.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h",
     "Completes a copy whose flags and kind are already copied: stores the pointer and takes a reference for dst.",
     THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "0x21 and its like: eight plain bytes", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "dst = src, with dst holding a reference of its own.", THE_MODULE},
    {"Files/LLVM/Value_Ownership.h", "A value assigned to itself keeps its one reference.", THE_MODULE},
    {"Files/Object/Object.h", "An object: what instances are made from.", EXPLAINS},
    {"Files/Object/Object_Base.h", "Objects of the host's collector.", EXPLAINS},
    {"Files/Object/Object_Base.h", "the state of a collector thread; opaque here", EXPLAINS},
    {"Files/Object/Object_Base.h", "what objects pass to their base: all 24 bits of a variable's number", THE_HEADER},
    {"Files/Object/Object_Base.h", "The base of everything that the collector owns.", EXPLAINS},
    {"Files/Object/Object_Base.h", "All operations are the host's; their order is that of the table.", THE_HEADER},
    {"Files/Object/Object_Base.h", "for writing",
     "makes a variable; what objects have variables is the host's business"},
    {"Files/Object/Object_Base.h", "creation stamp", THE_MODULE},
    {"Files/Object/Object_Base.h", "eObjectKind", THE_HEADER},
    {"Files/Object/Object_Base.h", "first slot", THE_HEADER},
    {"Files/Room/Room.h", "A view of a running room.", EXPLAINS},
    {"Files/Room/Room.h", "A host keeps the view's other properties in a class of its own that derives from this.",
     A_FREEDOM},
    {"Files/Room/Room.h", "A view as the game data describes it.", EXPLAINS},
    {"Files/Room/Room.h", "rectangle in the room", GAME_DATA},
    {"Files/Room/Room.h", "rectangle on the screen", GAME_DATA},
    {"Files/Room/Room.h", "margins that a followed target keeps", GAME_DATA},
    {"Files/Room/Room.h", "largest step when following, negative for no limit", GAME_DATA},
    {"Files/Room/Room.h", "what the view follows: an object or an instance, -1 for nothing", GAME_DATA},
    {"Files/Run/Run_Globals.h", "scripts run in the global instance instead of the cameras' own", THE_MODULE},
    {"Platform/Compiler.h", "*", "compilers' spellings; no promise of a host"},
    {"Platform/Containers.h", "The host's maps and lists, as far as the module reads them.", EXPLAINS},
    {"Platform/Containers.h",
     "How it stores them is the host's business: the host specialises Find for each T that it keeps (CInstance, "
     "CObject).",
     "the linker tests it"},
    {"Platform/Containers.h", "may be null: readers stop there", A_FREEDOM},
    {"Platform/Lanes.h", "*", "no host needs it, and it is not installed"},
    {"Platform/Lock.h", "The lock around string reference counts.", "against other threads: the check has one"},
    {"Platform/Matrix.h", "Matrices and vectors.", EXPLAINS},
    {"Platform/Matrix.h", "Storage row-major: _12 is row 1, column 2, and m[1].", THE_HEADER},
    {"Platform/Matrix.h", "Room y grows downwards; a camera's own up vector follows its build (see Camera.h).",
     THE_MODULE},
    {"Platform/Matrix.h", "Angles degrees in every interface; RADIANS_PER_DEGREE converts them.", THE_HEADER},
    {"Platform/Matrix.h", "Floats strictly 32 bits, no fused or reordered operations (Strict_Float.h).",
     "the compiler's flags; matrix.same_bits sees their effect"},
    {"Platform/Matrix.h", "The builders are the host's.", EXPLAINS},
    {"Platform/Matrix.h", "pi / 180, rounded to float", THE_HEADER},
    {"Platform/Matrix.h", "a nameless struct: every compiler that we know takes it", EXPLAINS},
    {"Platform/Matrix.h", "the same bits, for exact copies and comparisons", THE_HEADER},
    {"Platform/Matrix.h", "Host.", EXPLAINS},
    {"Platform/Matrix.h",
     "Replaces the matrix by its inverse and answers true; answers false and changes nothing when the determinant is "
     "exactly zero.",
     THE_MODULE},
    {"Platform/Matrix.h", "Not finite where the determinant is tiny or not a number.", THE_MODULE},
    {"Platform/Matrix.h", "Module: Matrix_Invert.cpp.", THE_MODULE},
    {"Platform/Memory_Manager.h", "The host's allocator, as the module sees it.", EXPLAINS},
    {"Platform/Memory_Manager.h", "What the bytes added hold is not promised.", A_FREEDOM},
    {"Platform/Memory_Manager.h", "The allocator of value storage: string texts and the collector's slot tables.",
     EXPLAINS},
    {"Platform/Memory_Manager.h", "The added entries are not cleared.", THE_MODULE},
    {"Platform/Memory_Manager.h",
     "Growth is tagged with this header, so that a host's report tells tables from single blocks.", THE_MODULE},
    {"Platform/Strict_Float.h", "Float arithmetic exactly as written: one rounding per operation, on every target.",
     "the compiler's flags; the header refuses those that break it"},
    {"Platform/Strict_Float.h", "Include first in every source that computes.",
     "the compiler's flags; the header refuses those that break it"},
    {"Platform/Strict_Float.h",
     "Saved states and traces are compared bit for bit between devices, so a compiler that fuses a multiply with an "
     "add, reorders a sum or keeps extra precision breaks them silently.",
     "the compiler's flags; the header refuses those that break it"},
};

} // namespace

const Untested* UntestedSentences(int& count)
{
    count = static_cast<int>(sizeof UNTESTED / sizeof UNTESTED[0]);
    return UNTESTED;
}

} // namespace HostCheck
