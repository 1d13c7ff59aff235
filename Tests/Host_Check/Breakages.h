#pragma once
// The promises that the small host can break, one at a time, and the check that must notice each.

namespace SmallHost
{

// NAME of the breakage, the check that catches it
#define HOST_BREAKAGES(X)                                                                                              \
    X(BlocksLieAtOddPlaces, "memory.aligned")                                                                          \
    X(NewBlocksAreUsed, "memory.cleared")                                                                              \
    X(GrowthLosesBytes, "memory.resized_keeps_bytes")                                                                  \
    X(RefusalsAreServed, "memory.refused")                                                                             \
    X(RefusedGrowthClearsTheBlock, "memory.refused_growth")                                                            \
    X(ReAllocOfNullIsUsed, "memory.realloc_of_null")                                                                   \
    X(FreeOfNullCrashes, "memory.free_null")                                                                           \
    X(KvFreeOfNullCrashes, "memory.kvfree_null")                                                                       \
    X(KvReallocLosesBytes, "memory.kvrealloc")                                                                         \
    X(KvReallocRefusedClearsTheBlock, "memory.kvrealloc_refused")                                                      \
    X(TheLockBlocksItsOwner, "lock.reentrant")                                                                         \
    X(ProductsAreReversed, "matrix.product_order")                                                                     \
    X(ProductsOverwriteTheirFactors, "matrix.product_in_place")                                                        \
    X(ProductsAreCoarse, "matrix.product")                                                                             \
    X(ViewsAreRightHanded, "matrix.left_handed")                                                                       \
    X(DepthStartsAtMinusOne, "matrix.ortho")                                                                           \
    X(OrthoTakesHalfTheBox, "matrix.ortho_box")                                                                        \
    X(PerspectiveTakesHalfThePlane, "matrix.perspective_near_plane")                                                   \
    X(PerspectiveLeavesOldEntries, "matrix.perspective")                                                               \
    X(LookAtForgetsTheEye, "matrix.look_at_eye")                                                                       \
    X(TranslationIsTheFourthColumn, "matrix.translation_row")                                                          \
    X(LookAtKeepsTheUpVector, "matrix.look_at")                                                                        \
    X(ProductsSumFromTheRight, "matrix.same_bits")                                                                     \
    X(NotANumberStays, "number.nan")                                                                                   \
    X(IntegersWrap, "number.integer_range")                                                                            \
    X(LargeFloatsLoseTheirSign, "number.float_range")                                                                  \
    X(Integers64AreIgnored, "number.of_integer")                                                                       \
    X(TruthIsIgnored, "number.of_bool")                                                                                \
    X(TextIsIgnored, "number.of_text")                                                                                 \
    X(OtherTextIsOne, "number.of_other_text")                                                                          \
    X(HighBitsCount, "number.kind_mask")                                                                               \
    X(UndefinedIsOne, "number.of_nothing")                                                                             \
    X(TheFirstArgumentIsMeant, "number.of_real")                                                                       \
    X(Integers64PassThroughDoubles, "value.as_int64")                                                                  \
    X(ValuesAreWholeNumbers, "value.as_real")                                                                          \
    X(AnyNumberIsTrue, "value.as_bool")                                                                                \
    X(MissingInstancesAreTheFirst, "hash.null_when_missing")                                                           \
    X(MissingObjectsAreTheFirst, "hash.object_null_when_missing")                                                      \
    X(InstancesOutliveTheirRoom, "hash.instances_go")                                                                  \
    X(ListsLeaveOutChildren, "object.list")                                                                            \
    X(ListsTurnAround, "object.list_order")                                                                            \
    X(ListsAreRings, "list.end")                                                                                       \
    X(EmptyListsHaveAnEntry, "list.empty")                                                                             \
    X(HelpersJoinTheRoom, "object.helpers_unseen")                                                                     \
    X(InstancesStandElsewhere, "instance.position")                                                                    \
    X(InstancesHaveSmallNumbers, "instance.numbers")                                                                   \
    X(HelpersAreFlagged, "instance.made_by_module")                                                                    \
    X(BoxesStayStale, "instance.bounding_box")                                                                         \
    X(BoxesClearEveryFlag, "instance.bounding_box_flags")                                                              \
    X(MovedIsNotStale, "instance.moved")                                                                               \
    X(DeactivatedIsNotFlagged, "instance.deactivated")                                                                 \
    X(DestroyedIsNotFlagged, "instance.destroyed")                                                                     \
    X(TheRoomStaysWhenItEnds, "room.running")                                                                          \
    X(WidthAndHeightAreSwapped, "room.size")                                                                           \
    X(TheLastViewIsNull, "room.views")                                                                                 \
    X(ViewsHaveStrangeCameras, "room.cameras")                                                                         \
    X(MatricesAreKeptByPointer, "graphics.matrices_copied")                                                            \
    X(ExtentsOverwriteTheGlobals, "graphics.view_area")                                                                \
    X(ArraysStartWithoutReference, "array.new")                                                                        \
    X(RefusedArraysAreShared, "array.refused")                                                                         \
    X(CountsGoUpByTwo, "array.count")                                                                                  \
    X(ArraysAreNeverFreed, "array.freed")                                                                              \
    X(SharedArraysAreFreed, "array.shared")                                                                            \
    X(ArraysInArraysAreLost, "array.nested")                                                                           \
    X(TextLengthsCountTheEndMark, "text.length")                                                                       \
    X(TextsHaveTwoReferences, "text.references")                                                                       \
    X(GetStringOfOthersIsNull, "value.get_string_of_others")                                                           \
    X(EveryObjectIsAnInstance, "value.as_object_of_others")                                                            \
    X(ViewsShareTheirProperties, "view.own_properties")                                                                \
    X(GettersWriteNothing, "view.properties")                                                                          \
    X(SettersOfCamerasForgetTheView, "view.camera")                                                                    \
    X(MissingViewsAreTrue, "view.missing")                                                                             \
    X(MissingViewsAreSilent, "view.missing_reported")                                                                  \
    X(ErrorsNeverReturn, "error.returns")                                                                              \
    X(ErrorsAreNotFormatted, "error.reported")                                                                         \
    X(BuiltInsAreFoundByPrefix, "builtin.whole_name")                                                                  \
    X(TheFirstBuiltInIsEveryOne, "builtin.found")                                                                      \
    X(MissingScriptsAreTrue, "script.missing")                                                                         \
    X(ScriptsRunTwice, "script.runs")                                                                                  \
    X(NullIsCallable, "callable.null")                                                                                 \
    X(EveryObjectIsCallable, "callable.container_is_none")                                                             \
    X(ArgumentsAreDropped, "callable.arguments")                                                                       \
    X(RunningCallablesAreFreed, "callable.stays_alive")                                                                \
    X(CallablesHaveAnotherKind, "callable.kind")                                                                       \
    X(NewObjectsAreInSlotZero, "slot.unplaced")                                                                        \
    X(SlotsAreNotGivenBack, "slot.given_back")                                                                         \
    X(FreedEntriesAreCounted, "slot.count")                                                                            \
    X(TheSearchStartsOutside, "slot.search_start")                                                                     \
    X(FreeSaysDeleted, "object.free")                                                                                  \
    X(SpansOnlyMove, "generation.widens")                                                                              \
    X(EmptySpansStartAtZero, "generation.empty")                                                                       \
    X(StampsFall, "generation.stamps")                                                                                 \
    X(SurvivorsLeaveTheirSpan, "generation.survivors")                                                                 \
    X(MarksAreBytes, "mark.sets_bit")                                                                                  \
    X(MarkedObjectsAreMarkedAgain, "mark.twice")                                                                       \
    X(MarksAreSetOutside, "mark.outside")                                                                              \
    X(UnplacedObjectsAreMarked, "mark.unplaced")                                                                       \
    X(RootsAreFreed, "collector.root_stays")                                                                           \
    X(NothingIsFreed, "collector.frees")                                                                               \
    X(RemovedRootsStay, "collector.root_removed")                                                                      \
    X(HeldObjectsAreForgotten, "collector.held_object")                                                                \
    X(HeldArraysAreForgotten, "collector.held_array")                                                                  \
    X(ArraysWithoutOwnerAreForgotten, "collector.array_of_game")                                                       \
    X(OwnersTakeArraysFromTheGame, "collector.shared_array_of_game")                                                   \
    X(MarksOutsideAreKept, "collector.marks_outside")                                                                  \
    X(CollectionsRunWhenSwitchedOff, "collector.switched_off")                                                         \
    X(TheSweptRangeStays, "collector.range_outside")                                                                   \
    X(SweepsTakeWhatIsMadeMeanwhile, "collector.made_during_sweep")                                                    \
    X(NullContextsAreLeftOut, "context.null_entry")                                                                    \
    X(OneContextIsPopped, "context.stack")                                                                             \
    X(WritersPassIntegers, "buffer.writers")                                                                           \
    X(ReadersCutFractions, "buffer.readers")                                                                           \
    X(EachWriterHasAScratchValue, "buffer.scratch")                                                                    \
    X(FloatsAreWrittenAsIntegers, "buffer.round_trip")                                                                 \
    X(InfinitiesAreClamped, "buffer.infinities")                                                                       \
    X(TheHighestByteComesFirst, "buffer.little_endian")                                                                \
    X(ReadsPastTheEndRepeat, "buffer.past_the_end")                                                                    \
    X(DoneIsOne, "buffer.done")                                                                                        \
    X(SerialisedValuesAreReals, "value.serialise")                                                                     \
    X(PathsLoseTheirName, "file.path")                                                                                 \
    X(PathsOverrun, "file.path_inside")                                                                                \
    X(LongPathsAreCut, "file.path_too_long")                                                                           \
    X(NamesMayLeave, "file.path_leaves")                                                                               \
    X(TheEmptyPathIsOpened, "file.empty_path")                                                                         \
    X(MissingFilesAreOpened, "file.missing")                                                                           \
    X(BytesAreCounted, "file.items")                                                                                   \
    X(ClosedIsOne, "file.closed")                                                                                      \
    X(LineEndsAreTranslated, "file.content")                                                                           \
    X(WritingAppends, "file.replaced")                                                                                 \
    X(DirectoriesAreNotMade, "file.directories")                                                                       \
    X(TheConsoleIsExpected, "console.none")

enum class Breakage
{
    None,
#define HOST_NAME_OF(name, check) name,
    HOST_BREAKAGES(HOST_NAME_OF)
#undef HOST_NAME_OF
};

extern Breakage g_broken; // the promise that is broken now

inline bool Breaks(Breakage breakage) { return g_broken == breakage; }

} // namespace SmallHost
