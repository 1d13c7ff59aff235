#include "Runner/Api/Api_Functions.h"
#include "Runner/Draw/Painter.h"

namespace Runner
{
namespace
{
int ColourRgb(Arguments& call)
{
    int colour = 0;
    for (int i = 3; i >= 1; --i)
    {
        const double part = call.Number(i);
        if (!(part >= 0.0 && part < 256.0))
            call.FailArgument(i, "is 0 to 255, got " + DescribeAt(call.L, i));
        colour = colour << 8 | static_cast<int>(part);
    }
    return call.Return(colour);
}

// ---- state ----

int SetColour(Arguments& call)
{
    DrawingPainter(call).SetColour(call.Colour(1));
    return 0;
}

int SetAlpha(Arguments& call)
{
    DrawingPainter(call).SetAlpha(call.Float(1));
    return 0;
}

int SetDepth(Arguments& call)
{
    DrawingPainter(call).SetDepth(call.Float(1));
    return 0;
}

int SetDepthTest(Arguments& call)
{
    DrawingPainter(call).SetDepthTest(call.Flag(1, true));
    return 0;
}

int Clear(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const unsigned colour = call.Colour(1);
    painter.Clear(colour, call.Float(2, 1.0f));
    return 0;
}

// ---- shapes ----

int Rectangle(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const auto [left, top, right, bottom] = Floats<4>(call, 1);
    painter.Rectangle(left, top, right, bottom, call.Flag(5, false));
    return 0;
}

int Line(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const auto [x1, y1, x2, y2] = Floats<4>(call, 1);
    painter.Line(x1, y1, x2, y2, call.Float(5, 1.0f));
    return 0;
}

int Circle(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const auto [x, y, radius] = Floats<3>(call, 1);
    painter.Circle(x, y, radius, call.Flag(4, false));
    return 0;
}

int Triangle(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const auto [x1, y1, x2, y2, x3, y3] = Floats<6>(call, 1);
    painter.Triangle(x1, y1, x2, y2, x3, y3, call.Flag(7, false));
    return 0;
}

int Text(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const auto [x, y] = Floats<2>(call, 1);
    const std::string text = ShownText(call, 3);
    painter.Text(x, y, text, call.Float(4, 1.0f));
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"colour_rgb", 3, {"red", "green", "blue"}, ColourRgb},
    {"draw_set_colour", 1, {"colour"}, SetColour},
    {"draw_set_alpha", 1, {"alpha"}, SetAlpha},
    {"draw_set_depth", 1, {"z"}, SetDepth},
    {"draw_set_depth_test", 1, {"on"}, SetDepthTest},
    {"draw_clear", 1, {"colour", "alpha"}, Clear},
    {"draw_rectangle", 4, {"x1", "y1", "x2", "y2", "outline"}, Rectangle},
    {"draw_line", 4, {"x1", "y1", "x2", "y2", "width"}, Line},
    {"draw_circle", 3, {"x", "y", "radius", "outline"}, Circle},
    {"draw_triangle", 6, {"x1", "y1", "x2", "y2", "x3", "y3", "outline"}, Triangle},
    {"draw_text", 3, {"x", "y", "text", "scale"}, Text},
};
} // namespace

ApiTable DrawApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
