#include "Runner/App/Comparison_Window.h"

#include "Runner/App/Compared_Game.h"
#include "Runner/App/Comparison.h"
#include "Runner/App/Pages.h"
#include "Runner/App/Window_Stage.h"
#include "Runner/Base/Printable.h"
#include "Runner/Draw/Device.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int CAPTION = 18;           // pixels above the pictures, for letters of their own size
constexpr int WIDTH_OF_LETTERS = 900; // wider pictures, which a window shows smaller, have larger letters
constexpr int GAP = 4;                // between them
constexpr int64_t MILLISECOND = NANOSECONDS / 1000;
constexpr int64_t MILLISECONDS_WITHOUT_PROGRESS = 300; // that nobody is shown
constexpr int WAIT_MILLISECONDS = 10;
constexpr size_t CAPTION_LETTERS = 200;

std::string FileName(const std::string& path) { return Printable(path.substr(path.rfind('/') + 1), CAPTION_LETTERS); }

std::string CaptionOfOther(const RunOptions& options)
{
    std::string caption = FileName(OtherGame(options).game.file);
    for (const HandChange& value : options.values)
    {
        char number[40];
        std::snprintf(number, sizeof number, "%g", static_cast<double>(value.value));
        caption += " " + std::to_string(value.camera) + "." + value.field + "=" + number;
    }
    return caption;
}

RunOptions OwnGame(const RunOptions& options)
{
    RunOptions own = options;
    own.values.clear();
    return own;
}

// The two games, as one picture with one time.
class SideBySide : public StagePicture, public StageTime
{
public:
    explicit SideBySide(const RunOptions& options)
        : m_left(OwnGame(options), false),
          m_right(OtherGame(options), true), m_captions{FileName(options.game.file), CaptionOfOther(options)}
    {
    }

    void SetWindow(Window& window)
    {
        m_window = &window;
        m_page = std::make_unique<Panel>(window, PROGRESS_PAGE);
    }

    int Position() const override { return std::max(m_left.Position(), m_right.Position()); }
    int Frames() const override { return std::max(m_left.Frames(), m_right.Frames()); }

    // Both go at the same time. One that has ended or failed stays behind.
    void GoTo(int frame) override
    {
        const int wanted = std::max(frame, 0);
        if (!Go(wanted))
            Go(std::min(m_left.Position(), m_right.Position()));
        const bool isSame = m_left.Position() == m_right.Position() && m_left.Sum() == m_right.Sum();
        if (!isSame)
            m_partedAt = std::min(m_partedAt, Position());
        m_isDrawn = false;
    }

    PixelSize Size() const override
    {
        return {LeftWidth() + GAP + std::max(1, WithPicture(m_right, m_left).Shown().width),
                CAPTION * LetterScale() + std::max({1, m_left.Shown().height, m_right.Shown().height})};
    }

    bool Show(const Showing& showing) override
    {
        if (m_panel == nullptr || m_panel->Size().width != Size().width || m_panel->Size().height != Size().height)
            m_panel = std::make_unique<Panel>(*m_window, Size());
        if (!m_isDrawn)
            m_panel->Draw([this](Painter& painter) { Paint(painter); });
        m_isDrawn = true;
        if (m_panel->Open() != nullptr)
            m_panel->Open()->Show(showing);
        return m_panel->Open() != nullptr;
    }

    // Of the game; that of the other one is told beside its picture, too.
    std::string Failure() const { return !m_left.Failure().empty() ? m_left.Failure() : m_right.Failure(); }

    bool CanPlay() const { return Frames() > 0 || Failure().empty(); }

private:
    // A game that could not start has no picture, and takes the room that the other one does.
    static const ComparedGame& WithPicture(const ComparedGame& game, const ComparedGame& other)
    {
        return game.Shown().width > 0 ? game : other;
    }
    int LeftWidth() const { return std::max(1, WithPicture(m_left, m_right).Shown().width); }

    int LetterScale() const { return std::max(1, (2 * LeftWidth() + GAP) / WIDTH_OF_LETTERS); }

    // False: the user has ended the way before it was done.
    bool Go(int frame)
    {
        const bool isWay = frame != Position() + 1 && m_panel != nullptr; // the window takes its size from a frame
        m_left.Ask(frame);
        m_right.Ask(frame);
        const int64_t start = m_window->Now();
        bool isCancelled = false;
        while (m_left.IsAsked() || m_right.IsAsked())
        {
            m_left.Take(WAIT_MILLISECONDS);
            m_right.Take(m_left.IsAsked() ? 0 : WAIT_MILLISECONDS);
            const bool isLong = m_window->Now() - start >= MILLISECONDS_WITHOUT_PROGRESS * MILLISECOND;
            if (!isLong || !isWay || isCancelled)
                continue;
            const ComparedGame& last = m_left.IsAsked() ? m_left : m_right;
            isCancelled = !ShowProgressPage(*m_window, *m_page, "Going to frame " + std::to_string(frame), last.Done(),
                                            last.OfWay());
            if (isCancelled)
            {
                m_left.Cancel();
                m_right.Cancel();
            }
        }
        return !isCancelled || m_window->IsClosed();
    }

    void Paint(Painter& painter) const
    {
        const auto scale = static_cast<float>(LetterScale());
        PaintGame(painter, m_left, m_captions[0], 0.0f, scale);
        PaintGame(painter, m_right, m_captions[1], static_cast<float>(LeftWidth() + GAP), scale);
        if (m_partedAt > Position())
            return;
        const std::string text = "they differ, seen from frame " + std::to_string(m_partedAt) + " on";
        painter.SetColour(0x80E0FF);
        painter.Text(static_cast<float>(Size().width) - Painter::TextWidth(text, scale) - 4.0f, 3.0f * scale, text,
                     scale);
    }

    static void PaintGame(Painter& painter, const ComparedGame& game, const std::string& caption, float left,
                          float scale)
    {
        const float top = CAPTION * scale;
        painter.Pixels(game.Shown(), left, top);
        painter.SetColour(0xFFFFFF);
        painter.Text(left + 4.0f, 3.0f * scale, caption, scale);
        if (game.Failure().empty())
            return;
        const auto letters =
            static_cast<size_t>(static_cast<float>(std::max(game.Shown().width, 160)) / (8.0f * scale)) - 1;
        float y = top + 4.0f;
        painter.SetColour(0x4060FF);
        for (const std::string& line : Wrapped(Printable(game.Failure(), 400), letters))
        {
            painter.Text(left + 4.0f, y, line, scale);
            y += 14.0f * scale;
        }
    }

    ComparedGame m_left, m_right;
    const std::string m_captions[2];
    Window* m_window = nullptr;
    std::unique_ptr<Panel> m_page, m_panel;
    bool m_isDrawn = false;
    int m_partedAt = INT32_MAX; // the first frame at which they were seen to differ
};
} // namespace

Outcome CompareInWindow(const RunOptions& options, FILE* err, const WindowOpener& open)
{
    SideBySide games(options); // before the window
    std::string why;
    const auto window = open({"Comparison", options.scale, options.fullscreen, options.keys, true}, why);
    if (window == nullptr)
        return {why, EXIT_GAME_ERROR};
    window->onLost = [err] { EndWithoutDisplay(err, ""); };
    games.SetWindow(*window);
    games.GoTo(0);
    if (!games.CanPlay())
        return {games.Failure(), EXIT_GAME_ERROR};
    WindowStage stage(*window, games, options.keys);
    stage.time = &games;
    InputFrame seen;
    while (stage.Next(seen))
    {
        if (games.Position() < games.Frames())
            games.GoTo(games.Position() + 1);
        else
            stage.Pause();
    }
    return {games.Failure(), games.Failure().empty() ? EXIT_DONE : EXIT_GAME_ERROR};
}
} // namespace Runner
