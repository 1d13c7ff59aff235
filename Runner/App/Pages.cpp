#include "Runner/App/Pages.h"

#include "Runner/Base/Printable.h"
#include "Runner/Input/Input.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Lua/Script_Engine.h"

#include <algorithm>
#include <filesystem>

namespace Runner
{
namespace
{
constexpr PixelSize PAGE = {640, 360};
constexpr float MARGIN = 20.0f;
constexpr float LINE = 14.0f;
constexpr float BOTTOM = 360.0f - 2 * LINE; // of what is written: further lines are on the console alone
constexpr size_t CHARACTERS = 75;           // of a line
constexpr int POLL_MILLISECONDS = 30;
constexpr unsigned TITLE_COLOUR = 0x80E0FF, TEXT_COLOUR = 0xFFFFFF, QUIET_COLOUR = 0xB0B0B0;

bool IsOver(const Window& window) { return window.IsClosed() || ScriptEngine::Interrupted(); }

// The next frame of input for a page.
InputFrame PageInput(Window& window)
{
    window.Poll(POLL_MILLISECONDS);
    Command command = Command::Help;
    while (window.TakeCommand(command))
        if (command == Command::Fullscreen)
            window.ToggleFullscreen();
    return window.TakeInput();
}

// ---- errors ----

class Writer
{
public:
    explicit Writer(Painter& painter) : m_painter(painter) {}

    void Write(unsigned colour, const std::string& line, float scale = 1.0f)
    {
        m_painter.SetColour(colour);
        const auto characters = static_cast<size_t>(static_cast<float>(CHARACTERS) / scale);
        for (const std::string& part : Wrapped(Printable(line, line.size()), characters))
        {
            if (m_y > BOTTOM - LINE * scale)
                return;
            m_painter.Text(MARGIN, m_y, part, scale);
            m_y += LINE * scale;
        }
    }
    void Skip() { m_y += LINE / 2; }

private:
    Painter& m_painter;
    float m_y = MARGIN;
};

// The picture, as large as it fits, and so dark that letters on it can be read.
void PaintBehind(Painter& painter, int picture, const Picture& size)
{
    const Port where = Letterbox({size.width, size.height}, PAGE).Where();
    const auto left = static_cast<float>(where.x), top = static_cast<float>(where.y);
    painter.SetColour(TEXT_COLOUR);
    painter.SpriteStretched(picture, 0, left, top, left + static_cast<float>(where.width),
                            top + static_cast<float>(where.height));
    painter.SetColour(0u);
    painter.SetAlpha(0.7f);
    painter.Rectangle(0.0f, 0.0f, static_cast<float>(PAGE.width), static_cast<float>(PAGE.height));
    painter.SetAlpha(1.0f);
}

void PaintError(Painter& painter, const FailureReport& report)
{
    Writer writer(painter);
    writer.Write(TITLE_COLOUR, "The game has stopped", 2.0f);
    writer.Skip();
    writer.Write(TEXT_COLOUR, report.line);
    writer.Skip();
    for (const std::string& line : report.Details())
        writer.Write(line[0] == ' ' ? QUIET_COLOUR : TEXT_COLOUR, line);
    painter.SetColour(0x30221C);
    painter.Rectangle(0.0f, BOTTOM, 640.0f, 360.0f);
    painter.SetColour(TITLE_COLOUR);
    painter.Text(MARGIN, 360.0f - 1.5f * LINE, "R starts it again; close the window to end");
}

// ---- the menu ----

constexpr int COLUMNS = 2;
constexpr int ROWS_SHOWN = 2;
constexpr float CELL_WIDTH = 300.0f, CELL_HEIGHT = 150.0f;
constexpr float PICTURE_WIDTH = 224.0f, PICTURE_HEIGHT = 126.0f;
constexpr float MENU_TOP = 44.0f;

class Menu
{
public:
    Menu(Window& window, const std::vector<MenuEntry>& games) : m_window(window), m_games(games), m_panel(window, PAGE)
    {
        Painter* const painter = m_panel.Open();
        for (const MenuEntry& game : games)
            m_pictures.push_back(painter == nullptr || game.picture.empty() ? -1
                                                                            : painter->LoadSprite(game.picture, 1));
    }

    int Choose()
    {
        while (!IsOver(m_window))
        {
            m_panel.Draw([this](Painter& painter) { Paint(painter); });
            m_panel.ShowAlone();
            m_input.BeginFrame(PageInput(m_window));
            if (Take())
                return m_chosen;
        }
        return -1;
    }

private:
    bool Pressed(const char* key, const char* button) const
    {
        return m_input.Pressed({InputPart::KeyName, FindKey(key)}) ||
               m_input.Pressed({InputPart::PadButton, FindPadButton(button)});
    }

    // True: the game is chosen.
    bool Take()
    {
        const int last = static_cast<int>(m_games.size()) - 1;
        int next = m_chosen;
        next += Pressed("right", "dpad_right") ? 1 : 0;
        next -= Pressed("left", "dpad_left") ? 1 : 0;
        next += Pressed("down", "dpad_down") ? COLUMNS : 0;
        next -= Pressed("up", "dpad_up") ? COLUMNS : 0;
        m_chosen = next >= 0 && next <= last ? next : m_chosen;
        const int pointed = PointedAt();
        const bool isClicked = m_input.Pressed({InputPart::MouseButton, 0}) && pointed >= 0;
        if (pointed >= 0 && (isClicked || HasMouseMoved()))
            m_chosen = pointed;
        return isClicked || Pressed("enter", "a") || Pressed("space", "start");
    }

    bool HasMouseMoved()
    {
        const MouseFrame& mouse = m_input.Frame().mouse;
        const bool hasMoved = mouse.x != m_mouse.x || mouse.y != m_mouse.y;
        m_mouse = mouse;
        return hasMoved;
    }

    int TopRow() const { return std::max(0, m_chosen / COLUMNS - (ROWS_SHOWN - 1)); }

    int PointedAt() const
    {
        const MouseFrame& mouse = m_input.Frame().mouse;
        for (size_t i = 0; i < m_games.size(); ++i)
        {
            const auto [x, y] = Place(static_cast<int>(i));
            if (mouse.x >= x && mouse.x < x + CELL_WIDTH && mouse.y >= y && mouse.y < y + CELL_HEIGHT)
                return static_cast<int>(i);
        }
        return -1;
    }

    ScreenPoint Place(int game) const
    {
        const int column = game % COLUMNS, row = game / COLUMNS - TopRow();
        return {MARGIN + static_cast<float>(column) * CELL_WIDTH, MENU_TOP + static_cast<float>(row) * CELL_HEIGHT};
    }

    void Paint(Painter& painter) const
    {
        for (size_t i = 0; i < m_games.size(); ++i)
            PaintGame(painter, static_cast<int>(i));
        painter.SetColour(0x30221C);
        painter.Rectangle(0.0f, 0.0f, 640.0f, MENU_TOP);
        painter.SetColour(TITLE_COLOUR);
        painter.Text(MARGIN, 12.0f, "Games", 2.0f);
        painter.SetColour(QUIET_COLOUR);
        painter.Text(120.0f, 20.0f, "arrows and Enter, the mouse, or a gamepad");
    }

    void PaintGame(Painter& painter, int game) const
    {
        const auto [x, y] = Place(game);
        const int picture = m_pictures[static_cast<size_t>(game)];
        painter.SetColour(game == m_chosen ? TITLE_COLOUR : 0x503A30u);
        painter.Rectangle(x, y, x + PICTURE_WIDTH + 8.0f, y + PICTURE_HEIGHT + 20.0f);
        painter.SetColour(TEXT_COLOUR);
        if (picture >= 0)
            painter.SpriteStretched(picture, 0, x + 4.0f, y + 4.0f, x + 4.0f + PICTURE_WIDTH,
                                    y + 4.0f + PICTURE_HEIGHT);
        painter.SetColour(game == m_chosen ? 0u : TEXT_COLOUR);
        painter.Text(x + 6.0f, y + PICTURE_HEIGHT + 6.0f, Printable(m_games[static_cast<size_t>(game)].name, 26));
    }

    Window& m_window;
    const std::vector<MenuEntry>& m_games;
    Panel m_panel;
    Input m_input;
    MouseFrame m_mouse;
    std::vector<int> m_pictures; // sprites; -1 for none
    int m_chosen = 0;
};
} // namespace

bool ShowErrorPage(Window& window, const FailureReport& report, const Picture& last,
                   const std::function<bool()>& isMended)
{
    Panel panel(window, PAGE);
    Painter* const opened = last.rgba.empty() ? nullptr : panel.Open();
    const int picture = opened == nullptr ? -1 : opened->AddSheet(last, last.width, last.height);
    const auto again = static_cast<size_t>(FindKey("r"));
    while (!IsOver(window))
    {
        panel.Draw(
            [&report, &last, picture](Painter& painter)
            {
                if (picture >= 0)
                    PaintBehind(painter, picture, last);
                PaintError(painter, report);
            });
        panel.ShowAlone();
        if (PageInput(window).names.pressed[again] || (isMended != nullptr && isMended()))
            return true;
    }
    return false;
}

bool ShowProgressPage(Window& window, Panel& panel, const std::string& what, int done, int all)
{
    const float part = static_cast<float>(done) / static_cast<float>(std::max(1, all));
    panel.Draw(
        [&what, part](Painter& painter)
        {
            painter.SetColour(TEXT_COLOUR);
            painter.Text(MARGIN, 8.0f, what + ", Escape ends it");
            painter.Rectangle(MARGIN, 30.0f, 300.0f, 44.0f, true);
            painter.Rectangle(MARGIN, 30.0f, MARGIN + 280.0f * part, 44.0f);
        });
    panel.ShowAlone();
    window.Poll(0);
    const bool isCancelled = window.TakeInput().names.pressed[static_cast<size_t>(FindKey("escape"))];
    return !isCancelled && !IsOver(window);
}

std::vector<MenuEntry> FindGames(const std::string& directory)
{
    std::vector<MenuEntry> games;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(directory, ignored))
    {
        const std::string name = entry.path().filename().string();
        MenuEntry game = {name, entry.path() / (name + ".lua"), entry.path() / "menu.png"};
        if (!std::filesystem::exists(game.picture, ignored))
            game.picture.clear();
        if (std::filesystem::is_regular_file(game.file, ignored))
            games.push_back(game);
    }
    std::sort(games.begin(), games.end(), [](const MenuEntry& a, const MenuEntry& b) { return a.name < b.name; });
    return games;
}

int ShowMenu(Window& window, const std::vector<MenuEntry>& games) { return Menu(window, games).Choose(); }
} // namespace Runner
