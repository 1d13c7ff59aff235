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
    DrawingPainter(call).Clear(call.Colour(1), call.Float(2, 1.0f));
    return 0;
}

// ---- shapes ----

int Rectangle(Arguments& call)
{
    DrawingPainter(call).Rectangle(call.Float(1), call.Float(2), call.Float(3), call.Float(4), call.Flag(5, false));
    return 0;
}

int Line(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    painter.SetLineWidth(call.Float(5, 1.0f));
    painter.Line(call.Float(1), call.Float(2), call.Float(3), call.Float(4));
    painter.SetLineWidth(1.0f);
    return 0;
}

int Circle(Arguments& call)
{
    DrawingPainter(call).Circle(call.Float(1), call.Float(2), call.Float(3), call.Flag(4, false));
    return 0;
}

int Triangle(Arguments& call)
{
    DrawingPainter(call).Triangle(call.Float(1), call.Float(2), call.Float(3), call.Float(4), call.Float(5),
                                  call.Float(6), call.Flag(7, false));
    return 0;
}

int Text(Arguments& call)
{
    DrawingPainter(call).Text(call.Float(1), call.Float(2), call.Text(3), call.Float(4, 1.0f));
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
