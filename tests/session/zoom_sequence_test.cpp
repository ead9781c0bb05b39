// Zooming, panning, painting, selecting, undoing and resizing in any order: after each step the screen is what a
// repaint of everything shows.
#include <random>

#include "tests/session/zoom_fixture.h"

struct ZoomSequence : ZoomSession {
    std::mt19937 random;

    int upTo(int last) { return (int)(random() % (unsigned)(last + 1)); }
    POINT somewhere() { return {upTo(clientWidth - 1), upTo(clientHeight - 1)}; }

    bool moveSomewhere()
    {
        const POINT at = somewhere();
        return movePointerOnCanvas(&host, at.x, at.y);
    }

    bool turn() { return moveSomewhere() && turnWheel(120 * (upTo(4) - 2)); }

    bool drag() { return drawStroke(&host, {somewhere(), somewhere(), somewhere(), somewhere()}); }

    bool panByMiddle()
    {
        if (!moveSomewhere() || !pressMiddle()) return false;
        const bool moved = moveSomewhere() && moveSomewhere();
        return releaseMiddle() && moved;
    }

    bool tap()
    {
        static const WORD keys[] = {VK_ADD, VK_ADD, VK_SUBTRACT, VK_LEFT, VK_DOWN, VK_RETURN, VK_OEM_6, '0', '1'};
        return tapKey(keys[upTo(8)]);
    }

    bool undoOrRedo()
    {
        return tapKey('Z', upTo(2) ? std::vector<WORD>{VK_CONTROL} : std::vector<WORD>{VK_CONTROL, VK_SHIFT});
    }

    bool resize()
    {
        const int width = 240 + upTo(160);
        runOnHost(&host,
                  [&] { SetWindowPos(host.dialog, nullptr, 0, 0, width, width * 3 / 4, SWP_NOMOVE | SWP_NOZORDER); });
        RECT client;
        GetClientRect(host.canvas, &client);
        clientWidth = client.right;
        clientHeight = client.bottom;
        return settle(&host);
    }

    bool chooseTool()
    {
        static const int tools[] = {ID_BRUSH, ID_SELECTION, ID_SELECTION, ID_AEROGRAPHE};
        return clickControl(&host, tools[upTo(3)]);
    }

    bool someStep(std::string* name)
    {
        struct Step {
            const char* name;
            bool (ZoomSequence::*run)();
        };
        static const Step steps[] = {{"wheel", &ZoomSequence::turn},      {"wheel", &ZoomSequence::turn},
                                     {"drag", &ZoomSequence::drag},       {"drag", &ZoomSequence::drag},
                                     {"drag", &ZoomSequence::drag},       {"middle", &ZoomSequence::panByMiddle},
                                     {"key", &ZoomSequence::tap},         {"key", &ZoomSequence::tap},
                                     {"undo", &ZoomSequence::undoOrRedo}, {"resize", &ZoomSequence::resize},
                                     {"tool", &ZoomSequence::chooseTool}};
        const Step& step = steps[upTo(10)];
        *name += std::string(" ") + step.name;
        return (this->*step.run)();
    }

    void runSequence(unsigned seed, int count)
    {
        random.seed(seed);
        openOwnColours(600, 450, 260, 195);
        std::string done = "seed " + std::to_string(seed) + ":";
        ASSERT_TRUE(clickControl(&host, ID_BRUSH) && drag());
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(someStep(&done)) << done;
            ASSERT_NO_FATAL_FAILURE(expectRepaintChangesNothing(done.c_str()));
        }
        closeSession();
    }
};

TEST_F(ZoomSequence, First)
{
    runSequence(1, 60);
}

TEST_F(ZoomSequence, Second)
{
    runSequence(2, 60);
}

TEST_F(ZoomSequence, Third)
{
    runSequence(3, 60);
}
