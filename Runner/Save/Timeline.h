#pragma once
// A play in which one can go back: everything that entered the game is kept, so any frame can be played again.
//
// The game at frame N is the one that has played N frames. Going there plays the recorded frames again without painting
// (draw events and callbacks run: they are part of the game's state), silently, and without writing. It starts at the
// nearest state that was kept on the way, as a saved game, but only where this game's saved states go on exactly: local
// variables and functions of scripts are not saved, and only the game's load event can bring them back. Each kept state
// is therefore played on up to the next one, in a process of its own while the game plays, and must give the same
// frames and the same state there. Where that is not possible or fails, the way starts at the first frame.

#include "Runner/Game/Game.h"
#include "Runner/Save/Recorder.h"
#include "Runner/Save/Replay.h"

#include <functional>
#include <memory>

#include <sys/types.h>

namespace Runner
{
class Timeline
{
public:
    static constexpr int KEEP_EVERY = 300; // frames from one kept state to the next; may double
    static constexpr size_t KEPT_BYTES_LIMIT = size_t{64} * 1024 * 1024; // of all kept states
    static constexpr int PAINTED_FRAMES =
        3; // the last of a way are painted, so that what is drawn once in a while shows

    // options: of the game; its trace is written while the game plays on for the first time. record: the recording's
    // file, empty for none. save: content of a saved game to go on from, empty for none.
    // apply: makes a change by hand again; null when nobody makes any.
    Timeline(GameOptions options, ScriptOpener openScripts, const std::string& record, std::vector<uint8_t> save,
             ChangeApplier apply = nullptr);
    ~Timeline();
    Timeline(const Timeline&) = delete;
    Timeline& operator=(const Timeline&) = delete;

    // Before Start: the frames of a recorded run lie ahead, and PlayRecorded plays them instead of Play.
    void Follow(Recording recording);

    bool Start(std::string& why);   // makes the game and loads it. Once, before all else. False: it failed
    Game& Now() { return *m_game; } // another object after a way back
    const Game& Now() const { return *m_game; }
    int Position() const { return m_position; }
    int Frames() const { return m_recorder.Recorded().Frames(); } // that are known

    // Plays one frame on. What is known of later frames is forgotten. False: the game has failed.
    bool Play(const InputFrame& seen);

    // Plays the next frame of what is followed, which is there. False: the game has failed. Changes by hand since the
    // frame before belong to it from now on: the way back leads through them.
    bool PlayRecorded();

    // Of what is followed: the first frame (from 1) of the second in which the game went another way than the recorded
    // run; 0 while it has not, and after a change by hand, which leads elsewhere.
    int PartedAt() const;

    // A change that was made in the running game by hand, before its next frame. A reload leaves all of them out.
    void Keep(const HandChange& change) { m_recorder.Keep(change); }

    // Changes by hand of all frames, and of the one to come: the last of each camera and property, in their order.
    std::vector<HandChange> Changes() const;

    // Called now and then on the way, with the frames played and to be played; false ends the way there.
    using Progress = std::function<bool(int done, int all)>;

    enum class Arrival
    {
        There,
        Cancelled, // at a frame on the way
        Failed,    // as the game did when it was played; or it is not the same game any more
    };
    Arrival GoTo(int frame, const Progress& progress); // 0 to Frames()

    // Watches the last frame of each way, in place of who watches the running game. Null for nobody; not owned.
    FrameObserver* watcher = nullptr;

    // Starts the game anew from its files, which have changed, and plays the recorded frames up to that one. The
    // recording is one of the new game from then on, whatever it does with the input.
    Arrival Reload(int frame, const Progress& progress);
    bool HasParted() const { return m_hasParted; } // the running game went another way than when it was played first

    // ---- kept states ----
    bool StatesAreExact() const { return m_isExact && m_checked > 0; } // those that have been checked so far
    size_t KeptBytes() const;
    void FinishChecks(); // waits for the check that runs, and checks the rest

    const Recording& Recorded() const { return m_recorder.Recorded(); }
    bool Finish(std::string& why) { return m_recorder.Finish(*m_game, why); }

private:
    struct KeptState
    {
        int frame = 0; // frames played
        std::vector<uint8_t> save;
        Settings settings; // saved games hold none
    };

    // Leads the game's questions to the recorder or to the recording.
    class Switch : public Journal
    {
    public:
        Answer Ask(Question question, const std::function<Answer()>& ask) override { return to->Ask(question, ask); }
        void BeginFrame(const Game& game) override { to->BeginFrame(game); }
        void EndFrame(const Game& game) override { to->EndFrame(game); }
        Journal* to = nullptr;
    };

    bool MakeGame(const KeptState& from, Journal& journal, bool draw);
    bool Restore(const std::vector<uint8_t>& save);
    const KeptState& StartOf(int frame) const;
    bool LeadsOn(int frame) const;
    Arrival GoFrom(const KeptState& from, int frame, const Progress& progress);
    Arrival PlayOn(int frame, Replay& replay, const Progress& progress);
    bool PlayAgain(Replay& replay);
    void TakeFrame(bool isGood);

    void KeepState();
    void DropStates(int frame);
    void ThinOut();
    void BeginCheck();
    void TakeCheck(bool wait);
    void StopCheck();
    bool CheckStates();
    bool GoesOnTo(const KeptState& from, const KeptState& to);

    const GameOptions m_options;
    const ScriptOpener m_openScripts;
    const ChangeApplier m_apply;
    Recorder m_recorder;
    Switch m_switch;
    std::unique_ptr<Game> m_game;
    KeptState m_first;            // the saved game that the play went on from, or nothing
    std::vector<uint64_t> m_sums; // Game::FrameSum of each frame, as the game played it first; after a reload of some
    int m_position = 0;
    bool m_hasParted = false;
    bool m_isReloading = false;
    bool m_isFollowing = false; // of frames that a recording brought
    bool m_isFirst = true;      // the game is the first one that was made
    bool m_isChanged = false;   // what is followed, by hand
    int m_askedElseAt = 0; // the frame (from 1) in which the game asked for what the recording does not hold; 0: none

    std::vector<KeptState> m_kept; // ascending
    int m_keepEvery = KEEP_EVERY;
    size_t m_checked = 0;  // of m_kept from the first on
    size_t m_checking = 0; // of m_kept up to here, by the process
    pid_t m_checker = 0;   // the process; 0 for none
    bool m_isExact = true; // no check has failed
};
} // namespace Runner
