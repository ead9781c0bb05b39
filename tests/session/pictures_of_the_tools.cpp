// Takes the pictures of the user's guide: each tool at work on a photo, in a session of its own. No test: it runs only
// on demand, for scripts/pictures, and checks nothing but that the windows came.
#include <cmath>

#include "tests/session/library_fixture.h"
#include "tests/session/pictures.h"

// Client points of the photo at 900 x 506.
static const RECT meadow = {60, 220, 460, 460};
static const RECT dandelion = {100, 30, 430, 278};
static const RECT smallOnes = {440, 260, 840, 500};

static std::vector<POINT> wave(int left, int right, int middle, int height)
{
    std::vector<POINT> points;
    for (int x = left; x <= right; x += 5)
        points.push_back({x, middle + (LONG)(height * sin((x - left) * 0.05))});
    return points;
}

struct DISABLED_Guide : SessionTest {
    void TearDown() override
    {
        removeLibraryDirectory(library);
        SessionTest::TearDown();
        restPointer();
    }

    void begin()
    {
        usePhotoOfPictures(this);
        palettePos = {dialogRect.right + 12, dialogRect.top};
        ASSERT_TRUE(open());
    }

    void choose(int tool, int pages = 3)
    {
        ASSERT_TRUE(clickControl(&host, tool));
        for (int i = 0; i < pages; ++i) {
            ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 2));
            ASSERT_TRUE(clickScrollBar(&host, ID_HEIGHT, 2));
        }
    }

    void stroke(const std::vector<POINT>& points) { ASSERT_TRUE(drawStroke(&host, points)); }

    void take(const std::string& name, RECT part)
    {
        restPointer();
        movePointer(&host, {GetSystemMetrics(SM_CXSCREEN) - 5, GetSystemMetrics(SM_CYSCREEN) - 5});
        ASSERT_TRUE(settle(&host));
        MapWindowPoints(host.canvas, nullptr, (POINT*)&part, 2);
        takePicture(name, part);
    }

    void end()
    {
        PostMessageW(host.palette, WM_COMMAND, ID_CLOSE, 0);
        ASSERT_TRUE(waitForReturn(&host));
    }

    void open(int button, int control, HWND* window)
    {
        CheckDlgButton(host.palette, button, BST_CHECKED);
        PostMessageW(host.palette, WM_COMMAND, (WPARAM)button, 0);
        ASSERT_TRUE(waitUntil("the dialog", [&] { return (*window = dialogWith(host, control)) != nullptr; }));
        ASSERT_TRUE(settle(&host));
    }

    using SessionTest::open;
};

TEST_F(DISABLED_Guide, Painting)
{
    begin();
    choose(ID_BRUSH, 1);
    stroke(wave(90, 430, 340, 60));
    take("brush", meadow);
    choose(ID_RUBBER);
    stroke({{230, 250}, {235, 300}, {230, 360}, {240, 430}});
    take("rubber", meadow);
    end();

    begin();
    choose(ID_SMOOTH);
    for (int pass = 0; pass < 3; ++pass)
        for (int y = 70; y <= 240; y += 20)
            stroke({{270, y}, {300, y}, {340, y}, {395, y}});
    take("smooth", dandelion);
    end();

    begin();
    choose(ID_AEROGRAPHE);
    ASSERT_TRUE(clickControl(&host, ID_SOFT));
    for (int page = 0; page < 6; ++page)
        ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -2));
    stroke(wave(90, 430, 340, 60));
    for (int x = 100; x <= 400; x += 100)
        stroke({{x, 260}, {x + 3, 262}, {x, 264}});
    take("aerographe", meadow);
    end();

    begin();
    choose(ID_SPOONBILL);
    for (int y = 70; y <= 240; y += 42)
        stroke({{350, y}, {365, y}, {380, y}, {395, y}, {410, y}, {425, y}});
    take("spoonbill", dandelion);
    end();

    begin();
    choose(ID_STAMP);
    stroke({{551, 311}});
    stroke({{620, 450}});
    stroke({{690, 320}});
    stroke({{800, 440}});
    take("stamp", smallOnes);
    end();
}

TEST_F(DISABLED_Guide, ColoursAndText)
{
    begin();
    choose(ID_COLORS, 0);
    stroke({{820, 220}, {735, 362}});
    choose(ID_BRUSH);
    stroke(wave(470, 810, 330, 30));
    take("colors", smallOnes);
    end();

    begin();
    choose(ID_TEXT, 0);
    stroke({{470, 440}});
    for (const char* letter = "The first day of summer  "; *letter; ++letter)
        PostMessageA(host.canvas, WM_CHAR, (WPARAM)*letter, 1);
    take("text", smallOnes);
    end();
}

TEST_F(DISABLED_Guide, SelectionAndDialogs)
{
    begin();
    choose(ID_SELECTION, 0);
    std::vector<POINT> around;
    for (int i = 0; i < 40; ++i)
        around.push_back({(LONG)(265 + 148 * cos(i * 0.157)), (LONG)(165 + 115 * sin(i * 0.157))});
    stroke(around);
    take("selection", {60, 0, 480, 320});
    HWND window = nullptr;
    open(ID_LIBRARY, ID_LIBRARY_LIST, &window);
    ASSERT_FALSE(HasFatalFailure());
    PostMessageW(window, WM_COMMAND, ID_LIBRARY_SAVE, 0);
    ASSERT_TRUE(waitUntil("the saved selection",
                          [&] { return SendMessageW(GetDlgItem(window, ID_LIBRARY_LIST), LB_GETCOUNT, 0, 0) == 1; }));
    ASSERT_TRUE(settle(&host));
    takePicture("library", windowRect(window));
    end();

    begin();
    open(ID_CONTRAST, ID_RESET_HUE, &window);
    ASSERT_FALSE(HasFatalFailure());
    ASSERT_TRUE(settle(&host));
    takePicture("contrast", windowRect(window));
    PostMessageW(window, WM_COMMAND, ID_CONTRAST_CANCEL, 0);
    ASSERT_TRUE(waitUntil("it to close", [&] { return !dialogWith(host, ID_RESET_HUE); }));
    end();
}
