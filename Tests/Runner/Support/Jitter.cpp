#include "Tests/Runner/Support/Jitter.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Files/Room/Room.h"
#include "Runner/Api/Api.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Tests/Runner/Support/Jitter_Path.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace RunnerTest
{
namespace
{
constexpr int ROOM_SIZES[] = {2048, 8192, 32768};
constexpr int FRAMES_TO_SETTLE = 160; // with a constant speed
constexpr int STEADY_FRAMES = 3;
constexpr double REACH = 600.0; // nearer to the room's edges, limits may hold the camera
constexpr double VIEW_WIDTH = 640.0, VIEW_HEIGHT = 360.0;

// ---- one coordinate of one camera ----

class AxisJudge
{
public:
    AxisJudge(const JitterStyle& style, double dead, bool isSnapped, JitterFigures& figures)
        : m_style(style), m_dead(dead), m_isSnapped(isSnapped), m_figures(figures)
    {
    }

    void Begin() { m_frames = 0; }

    struct Look
    {
        double target; // place in the room
        double speed;  // of the target
        int constant;  // frames of constant speed
        double camera; // the centre of what it shows
        double screen; // the target on the screen, pixels
        double roomSize;
    };

    void See(const Look& now)
    {
        const double change = now.screen - m_last.screen;
        const double pace = now.camera - m_last.camera;
        m_isSteady = m_frames > 1 && std::abs(pace - m_pace) <= Rounding(now.camera) ? m_isSteady + 1 : 0;
        if (m_frames > 2)
        {
            JudgePlace(now, change);
            JudgeStep(now, change);
            JudgeAlternation(change);
            m_figures.acceleration = std::max(m_figures.acceleration, std::abs(pace - m_pace));
        }
        m_before = m_change;
        m_change = change;
        m_pace = pace;
        m_targetStep = now.target - m_last.target;
        m_last = now;
        ++m_frames;
    }

private:
    // What the matrices' floats may do to a steady motion: each place is off by half a unit in the last place.
    static double Rounding(double place)
    {
        const float at = std::abs(static_cast<float>(place));
        return 2.0 * (static_cast<double>(std::nextafter(at, INFINITY)) - static_cast<double>(at));
    }

    void JudgePlace(const Look& now, double change)
    {
        const bool isFree = now.target > REACH && now.target < now.roomSize - REACH;
        m_wasFree = now.constant > 0 && (now.constant == 1 || m_wasFree) && isFree;
        const double way = std::abs(now.speed) * now.constant;
        const bool hasLeftDeadZone = now.speed == 0.0 || way > 2.0 * m_dead + 10.0;
        if (!m_style.keepsInPlace || !m_wasFree || now.constant < FRAMES_TO_SETTLE || !hasLeftDeadZone)
            return;
        // the speed at which the way out of the dead zone was made leaves as much time to settle after it
        if (now.speed != 0.0 && now.constant < FRAMES_TO_SETTLE + (2.0 * m_dead + 10.0) / std::abs(now.speed))
            return;
        ++m_figures.keptFrames;
        m_figures.kept = std::max(m_figures.kept, std::abs(change));
    }

    void JudgeStep(const Look& now, double change)
    {
        // Where a float's unit changes, a constant speed becomes another one.
        const bool isConstant = now.constant >= STEADY_FRAMES && now.target - m_last.target == m_targetStep;
        if (!isConstant || m_isSteady < STEADY_FRAMES)
            return;
        ++m_figures.steadyFrames;
        m_figures.step = std::max(m_figures.step, std::abs(change - m_change));
    }

    void JudgeAlternation(double change)
    {
        const double tolerance = m_isSnapped ? 0.5 : ALTERNATION_TOLERANCE;
        const bool up = m_before > tolerance && m_change < -tolerance && change > tolerance;
        const bool down = m_before < -tolerance && m_change > tolerance && change < -tolerance;
        m_figures.alternations += up || down ? 1 : 0;
    }

    const JitterStyle& m_style;
    const double m_dead;
    const bool m_isSnapped;
    JitterFigures& m_figures;
    int m_frames = 0, m_isSteady = 0;
    bool m_wasFree = false;
    double m_change = 0.0, m_before = 0.0, m_pace = 0.0, m_targetStep = 0.0;
    Look m_last = {};
};

// ---- the matrices in double precision ----

struct Place
{
    double x, y;
};

Place Mapped(const kvMatrix& matrix, const Place& point)
{
    const auto at = [&matrix](int entry) { return static_cast<double>(matrix.m[entry]); };
    return {point.x * at(0) + point.y * at(4) + at(12), point.x * at(1) + point.y * at(5) + at(13)};
}

Place OnScreen(const CCamera& camera, const Place& point, double scale)
{
    const Place clip = Mapped(camera.m_projMat, Mapped(camera.m_viewMat, point));
    return {(clip.x + 1.0) / 2.0 * VIEW_WIDTH * scale, (clip.y + 1.0) / 2.0 * VIEW_HEIGHT * scale};
}

// The matrices do not turn, so the translation is the centre's place with the opposite sign.
Place Centre(const CCamera& camera)
{
    return {-static_cast<double>(camera.m_viewMat.m[12]) * static_cast<double>(camera.m_viewMat.m[0]),
            -static_cast<double>(camera.m_viewMat.m[13]) * static_cast<double>(camera.m_viewMat.m[5])};
}

// ---- a run ----

const char* NameOf(JitterBatch batch)
{
    return batch == JitterBatch::Smooth ? "smooth" : batch == JitterBatch::Snapped ? "snapped" : "plain";
}

class JitterGame
{
public:
    // With the styles first to last, counted from 0.
    JitterGame(JitterBatch batch, int roomSize, size_t first, size_t last, std::vector<JitterFigures>& figures)
        : m_isSnapped(batch == JitterBatch::Snapped), m_scale(batch == JitterBatch::Smooth ? 2.0 : 1.0),
          m_roomSize(roomSize), m_first(first), m_game(OptionsFor(batch, roomSize, first, last), Runner::OpenApi)
    {
        const std::vector<JitterStyle>& styles = StylesOf(batch);
        for (size_t i = first; i <= last; ++i)
        {
            m_across.emplace_back(styles[i], styles[i].deadX, m_isSnapped, figures[i]);
            m_down.emplace_back(styles[i], styles[i].deadY, m_isSnapped, figures[i]);
        }
    }

    bool Load() { return m_game.Load(); }
    std::string Failure() const { return m_game.Failure(); }

    bool Play(const std::vector<PathFrame>& path)
    {
        for (size_t i = 0; i < m_across.size(); ++i)
        {
            m_across[i].Begin();
            m_down[i].Begin();
        }
        for (size_t frame = 0; frame < path.size(); ++frame)
        {
            Put(path[frame], frame == 0);
            if (!m_game.Frame())
                return false;
            for (size_t i = 0; i < m_across.size(); ++i)
                Look(i, path[frame]);
        }
        return true;
    }

private:
    static Runner::GameOptions OptionsFor(JitterBatch batch, int roomSize, size_t first, size_t last)
    {
        Runner::GameOptions options;
        options.file = std::string(SOURCE_DIR) + "/Tests/Kit/support/jitter_game.lua";
        options.kit = std::string(SOURCE_DIR) + "/kit";
        options.draw = false;
        options.settings["batch"] = std::string(NameOf(batch));
        options.settings["room"] = int64_t{roomSize};
        options.settings["first"] = static_cast<int64_t>(first + 1); // Lua counts from 1
        options.settings["last"] = static_cast<int64_t>(last + 1);
        return options;
    }

    void Put(const PathFrame& frame, bool isFirst)
    {
        Runner::Instance& target = *m_game.world.Instances().front();
        target.x = frame.x;
        target.y = frame.y;
        target.frame = isFirst ? 1.0f : 0.0f;
        m_game.world.Touch(target);
    }

    double Snapped(float place) const { return std::floor(static_cast<double>(place) * m_scale + 0.5) / m_scale; }

    void Look(size_t style, const PathFrame& frame)
    {
        const CCamera* camera = g_CM.GetCamera(Run_Room->r_view[m_first + style]->cameraID);
        if (camera == nullptr)
            return;
        const Place target = {static_cast<double>(frame.x), static_cast<double>(frame.y)};
        const Place drawn = m_isSnapped ? Place{Snapped(frame.x), Snapped(frame.y)} : target;
        const Place centre = Centre(*camera);
        Place screen = OnScreen(*camera, drawn, m_scale);
        if (m_isSnapped)
            screen = {std::round(screen.x), std::round(screen.y)};
        m_across[style].See({target.x, frame.speedX, frame.constantX, centre.x, screen.x, m_roomSize});
        m_down[style].See({target.y, frame.speedY, frame.constantY, centre.y, screen.y, m_roomSize});
    }

    bool m_isSnapped;
    double m_scale;
    double m_roomSize;
    size_t m_first;
    Runner::Game m_game;
    std::vector<AxisJudge> m_across, m_down;
};
} // namespace

// The dead zones of the styles are parts of the view of 640 x 360: a sixteenth to each side, a quarter up and down.
const std::vector<JitterStyle>& StylesOf(JitterBatch batch)
{
    static const std::vector<JitterStyle> KIT = {
        {"lock", true, 0, 0, 0},
        {"platformer", true, 40, 90, 4},
        {"platformer, look-ahead, soft zone", true, 100, 130, 4},
        {"top-down", true, 40, 22.5, 4},
        {"top-down, exponential", true, 0, 0, 4},
        {"group of one", true, 0, 0, 4},
        {"screen by screen", false, 0, 0, 4},
        {"path", false, 0, 0, 4},
    };
    static const std::vector<JitterStyle> PLAIN = {
        {"plain exponential follow", true, 0, 0, 0},
        {"plain, rounded down", true, 0, 0, 0},
    };
    return batch == JitterBatch::Plain ? PLAIN : KIT;
}

namespace
{
// The paths are dealt out to the rooms and to the groups of styles, one after the other.
std::string PlayShare(const JitterRun& run, int share, std::vector<JitterFigures>& figures)
{
    const int rooms = static_cast<int>(std::size(ROOM_SIZES));
    const int groups = static_cast<int>(figures.size()) / run.together;
    const int size = ROOM_SIZES[share % rooms];
    const size_t first = static_cast<size_t>(share / rooms) * static_cast<size_t>(run.together);
    JitterGame game(run.batch, size, first, first + static_cast<size_t>(run.together) - 1, figures);
    bool isPlaying = game.Load();
    for (int path = share; isPlaying && path < run.paths; path += rooms * groups)
        isPlaying = game.Play(RandomPath(run.firstSeed + static_cast<uint64_t>(path), size, run.frames));
    return game.Failure();
}
} // namespace

std::vector<JitterFigures> MeasureJitter(const JitterRun& asked, std::string& why)
{
    JitterRun run = asked;
    std::vector<JitterFigures> figures(StylesOf(run.batch).size());
    run.together = std::min(run.together, static_cast<int>(figures.size()));
    const int shares = static_cast<int>(std::size(ROOM_SIZES) * figures.size()) / run.together;
    for (int share = 0; share < shares && why.empty(); ++share)
        why = PlayShare(run, share, figures);
    return why.empty() ? figures : std::vector<JitterFigures>();
}

std::string JitterBroken(JitterBatch batch, const JitterStyle& style, const JitterFigures& figures)
{
    const bool isSnapped = batch == JitterBatch::Snapped;
    const std::string name = style.name;
    constexpr double ROUNDING = 0.016; // of the camera's places, near the end of the largest room
    if (style.keepsInPlace && figures.keptFrames == 0)
        return name + ": no frame was judged";
    if (figures.kept > (isSnapped ? 0.0 : KEPT_TOLERANCE))
        return name + ": a target that is kept in place moves by " + std::to_string(figures.kept) + " pixels";
    if (figures.step > (isSnapped ? 1.0 : STEP_TOLERANCE))
        return name + ": a steady step changes by " + std::to_string(figures.step) + " pixels";
    if (figures.alternations > 0)
        return name + ": the target went to and fro " + std::to_string(figures.alternations) + " times";
    // Whole pixels come after the smoothing, which is the same in the smooth batch.
    const bool isSmoothed = style.acceleration > 0.0 && !isSnapped;
    if (isSmoothed && figures.acceleration > style.acceleration + ROUNDING)
        return name + ": the camera's speed changes by " + std::to_string(figures.acceleration) + " in a frame";
    return "";
}
} // namespace RunnerTest
