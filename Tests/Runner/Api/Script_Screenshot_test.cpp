// screenshot(): the format follows the name, and a script hears of every picture that was not written.

#include "Runner/Base/File_Faults.h"
#include "Runner/Host/Files.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using RunnerTest::GameTest;

class ScriptScreenshot : public GameTest
{
protected:
    ScriptScreenshot()
    {
        options.draw = true;
        options.width = options.height = 8;
    }

    ~ScriptScreenshot() override { Runner::FailFileOperation(Runner::FileOperation::ShortWrite, -1); }

    // The first bytes of a file in the save area.
    std::string StartOf(const std::string& name) const { return directory.Read("save/" + name).substr(0, 4); }
};

constexpr char PNG[] = "\x89PNG";

TEST_F(ScriptScreenshot, TheNameDecidesTheFormat)
{
    ASSERT_EQ(Run("assert(screenshot('a.png')) assert(screenshot('b.bmp')) assert(screenshot('c.PNG'))\n"
                  "assert(screenshot('d.Bmp')) assert(screenshot('x.y/e.bmp', 'bmp')) assert(screenshot('.bmp'))"),
              "");
    EXPECT_EQ(StartOf("a.png"), PNG);
    EXPECT_EQ(StartOf("b.bmp").substr(0, 2), "BM");
    EXPECT_EQ(StartOf("c.PNG"), PNG);
    EXPECT_EQ(StartOf("d.Bmp").substr(0, 2), "BM");
    EXPECT_EQ(StartOf("x.y/e.bmp").substr(0, 2), "BM");
    EXPECT_EQ(StartOf(".bmp").substr(0, 2), "BM");
    EXPECT_EQ(Log(), "");
}

TEST_F(ScriptScreenshot, ANameWithoutAnExtensionGetsTheFormatAskedFor)
{
    ASSERT_EQ(Run("assert(screenshot('a')) assert(screenshot('b', 'bmp')) assert(screenshot('x.y/c', 'png'))"), "");
    EXPECT_EQ(StartOf("a"), PNG);
    EXPECT_EQ(StartOf("b").substr(0, 2), "BM");
    EXPECT_EQ(StartOf("x.y/c"), PNG);
}

TEST_F(ScriptScreenshot, NamesOfOtherFormatsAreRefusedInOneLine)
{
    ASSERT_EQ(Run("assert(not screenshot('a.jpg')) assert(not screenshot('b.png.gif', 'png'))"), "");
    EXPECT_EQ(Log(), "screenshot() - a.jpg is no name for a picture: it must end in .png or .bmp\n"
                     "screenshot() - b.png.gif is no name for a picture: it must end in .png or .bmp\n");
    EXPECT_EQ(StartOf("a.jpg"), "");
}

TEST_F(ScriptScreenshot, ANameThatContradictsTheFormatIsRefused)
{
    ASSERT_EQ(Run("assert(not screenshot('a.bmp', 'png')) assert(not screenshot('b.png', 'bmp'))"), "");
    EXPECT_EQ(Log(), "screenshot() - a.bmp cannot be a picture in the format \"png\": name it .png\n"
                     "screenshot() - b.png cannot be a picture in the format \"bmp\": name it .bmp\n");
    EXPECT_EQ(StartOf("a.bmp"), "");
}

TEST_F(ScriptScreenshot, AnUnknownFormatIsAnError)
{
    EXPECT_EQ(Run("screenshot('a', 'jpg')"),
              "main.lua:2: screenshot: argument 2 (format) is \"bmp\" or \"png\", got the string \"jpg\"");
}

TEST_F(ScriptScreenshot, WithoutDrawingThereIsNoPicture)
{
    options.draw = false;
    ASSERT_EQ(Run("assert(screenshot('a.png') == false)"), "");
    EXPECT_EQ(Log(), "screenshot() - nothing is drawn with --no-draw, so there is no picture\n");
    EXPECT_EQ(StartOf("a.png"), "");
}

TEST_F(ScriptScreenshot, BeforeTheFirstDrawingThereIsNoPicture)
{
    ASSERT_EQ(Play("assert(screenshot('a.png') == false) screen_set_size(9, 9) room_add{}"), "");
    EXPECT_EQ(Log(), "screenshot() - nothing has been drawn yet\n");
}

TEST_F(ScriptScreenshot, AScriptHearsOfAPictureThatWasNotWritten)
{
    ASSERT_EQ(Run("assert(screenshot('b.png'))"), "");
    Runner::FailFileOperation(Runner::FileOperation::ShortWrite, 0);
    EXPECT_EQ(Run("assert(not screenshot('b.png'))"), "");
    EXPECT_EQ(Log(), "screenshot() - cannot write " + directory.Path("save/b.png") + "\n");
    EXPECT_EQ(StartOf("b.png"), PNG);
}
} // namespace
