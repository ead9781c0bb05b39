// Takes the pictures that scripts/pictures asks for; no test: it runs only on demand, and checks nothing but that the
// windows came. RETOUCH_PICTURES names the directory, with a separator at its end.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "tests/session/import_patch.h"
#include "tests/session/library_fixture.h"
#include "tests/session/pictures.h"
#include "tests/session/selection_fixture.h"

static const char* const locales[] = {"FRA", "ENU", "ESN", "PTB", "ITA", "RUS", "PLK", "NLD", "CHS",
                                      "DEU", "SKY", "HUN", "JPN", "CSY", "TRK", "LTH", "KOR"};
static std::string localeAnswer = "ENU";

static int WINAPI fakeLocale(LCID locale, LCTYPE type, LPSTR buffer, int size)
{
    if (type != LOCALE_SABBREVLANGNAME) return GetLocaleInfoA(locale, type, buffer, size);
    lstrcpynA(buffer, localeAnswer.c_str(), size);
    return (int)localeAnswer.size() + 1;
}

static void take(const std::string& name, RECT part)
{
    takePicture(name, part);
}

static BOOL CALLBACK takeVisibleTip(HWND window, LPARAM found)
{
    if (classOf(window) == TOOLTIPS_CLASSA && IsWindowVisible(window)) *(HWND*)found = window;
    return TRUE;
}

static HWND visibleTip(const Host& host)
{
    HWND found = nullptr;
    EnumThreadWindows(host.threadId, takeVisibleTip, (LPARAM)&found);
    return found;
}

struct DISABLED_Pictures : SelectionSession {
    void openPhotograph()
    {
        usePhotoOfPictures(this);
        palettePos = {dialogRect.right + 12, dialogRect.top};
        ASSERT_TRUE(open());
    }
    bool turnWheelAtPointer(int delta)
    {
        const size_t first = seenCount();
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = MOUSEEVENTF_WHEEL;
        input.mi.mouseData = (DWORD)delta;
        SendInput(1, &input, sizeof input);
        return waitUntil("the wheel", [&] { return wasSeen(first, nullptr, WM_MOUSEWHEEL); }) && settle(&host);
    }
    ImportPatch patch = {};

    void SetUp() override
    {
        SessionTest::SetUp();
        ASSERT_TRUE(patchImport(&patch, library.module, "GetLocaleInfoA", (void*)fakeLocale));
    }
    void TearDown() override
    {
        undoPatch(&patch);
        localeAnswer = "ENU";
        SessionTest::TearDown();
        restPointer();
        removeLibraryDirectory(library);
        RemoveDirectoryA(library.directory.c_str());
    }

    void command(HWND dialog, int id) { PostMessageW(dialog, WM_COMMAND, (WPARAM)id, 0); }

    void takeDialogs(const std::string& name)
    {
        ASSERT_TRUE(open());
        ASSERT_TRUE(settle(&host));
        take("palette-" + name, windowRect(host.palette));
        command(host.palette, ID_CONTRAST);
        ASSERT_TRUE(waitUntil("the contrast dialog", [&] { return dialogWith(host, ID_RESET_HUE) != nullptr; }));
        ASSERT_TRUE(settle(&host));
        take("contrast-" + name, windowRect(dialogWith(host, ID_RESET_HUE)));
        command(dialogWith(host, ID_RESET_HUE), ID_CONTRAST_CANCEL);
        ASSERT_TRUE(waitUntil("it to close", [&] { return !dialogWith(host, ID_RESET_HUE); }));
        CheckDlgButton(host.palette, ID_LIBRARY, BST_CHECKED);
        command(host.palette, ID_LIBRARY);
        ASSERT_TRUE(waitUntil("the library", [&] { return libraryWindow(host) != nullptr; }));
        ASSERT_TRUE(settle(&host));
        take("library-" + name, windowRect(libraryWindow(host)));
    }

    void takeQuestion(const std::string& name)
    {
        SendMessageW(libraryList(host), LB_SETCURSEL, 0, 0);
        command(libraryWindow(host), ID_LIBRARY_DELETE);
        ASSERT_TRUE(waitUntil("the question", [&] { return deleteQuestion(host) != nullptr; }));
        ASSERT_TRUE(settle(&host));
        take("question-" + name, windowRect(deleteQuestion(host)));
        command(deleteQuestion(host), IDNO);
        ASSERT_TRUE(waitUntil("it to go", [&] { return !deleteQuestion(host); }));
    }

    void leave()
    {
        command(host.palette, ID_CLOSE);
        ASSERT_TRUE(waitForReturn(&host));
    }

    // The tip of what lies under a point, with what it stands for.
    void takeTip(const std::string& name, POINT at)
    {
        restPointer();
        ASSERT_TRUE(waitUntil("the tip before to go", [&] { return !visibleTip(host); }));
        ASSERT_TRUE(placePointer(&host, at));
        ASSERT_TRUE(waitUntil(name.c_str(), [&] { return visibleTip(host) != nullptr; }));
        ASSERT_TRUE(settle(&host));
        take("tip-" + name, windowRect(visibleTip(host)));
    }

    void takePaletteTips(const std::string& name)
    {
        for (int id : {2,   8,   114, 116, 117, 118, 119, 120, 121, 122, 123,
                       124, 154, 190, 191, 202, 204, 212, 208, 209, 213, 214}) {
            const RECT rect = windowRect(GetDlgItem(host.palette, id));
            takeTip(name + "-" + std::to_string(id), {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2});
        }
    }
};

TEST_F(DISABLED_Pictures, Dialogs)
{
    for (const char* locale : locales) {
        localeAnswer = locale;
        removeLibraryDirectory(library);
        takeDialogs(locale);
        leave();
        makeLibraryDirectory(library);
        ASSERT_TRUE(
            writeFileBytes(libraryDirectory(library) + storedName(1), referenceTiff(roundSelection(5, 90, 70))));
        ASSERT_TRUE(open());
        CheckDlgButton(host.palette, ID_LIBRARY, BST_CHECKED);
        command(host.palette, ID_LIBRARY);
        ASSERT_TRUE(waitUntil("the library", [&] { return libraryWindow(host) != nullptr; }));
        takeQuestion(locale);
        leave();
    }
}

TEST_F(DISABLED_Pictures, Tips)
{
    for (const char* locale : {"ENU", "DEU", "RUS", "JPN"}) {
        localeAnswer = locale;
        ASSERT_TRUE(open());
        takePaletteTips(locale);
        leave();
    }
}

TEST_F(DISABLED_Pictures, Frame)
{
    for (const char* locale : locales) {
        localeAnswer = locale;
        openAt(sizes[0]);
        draw(star);
        restPointer();
        take("frame-" + std::string(locale), windowRect(host.canvas));
        for (int hit : {CLOSE, APPLY, FLIP_VERTICAL, FLIP_HORIZONTAL, BRIGHTER, DARKER, ROTATE, HUE_DOWN, HUE_UP,
                        SATURATION_MORE, SATURATION_LESS, CONTRAST_MORE, CONTRAST_LESS, LIFT_UP, LIFT_DOWN, TOP_LEFT}) {
            const POINT at = clientOfHit(hit);
            if (localeAnswer != "ENU") continue;
            printf("hit %d %d %d\n", hit, (int)at.x, (int)at.y);
            takeTip("frame-" + std::to_string(hit), onCanvas(host, at.x, at.y));
        }
        leave();
    }
}

// One look at everything, for other system settings.
TEST_F(DISABLED_Pictures, Desk)
{
    takeDialogs("desk");
    leave();
}

TEST_F(DISABLED_Pictures, Schemes)
{
    const int indices[] = {COLOR_BTNFACE,    COLOR_BTNTEXT,       COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW,
                           COLOR_3DDKSHADOW, COLOR_GRAYTEXT,      COLOR_WINDOW,       COLOR_WINDOWTEXT,
                           COLOR_HIGHLIGHT,  COLOR_HIGHLIGHTTEXT, COLOR_3DLIGHT};
    const struct {
        const char* name;
        bool highContrast;
        COLORREF colours[11];
    } schemes[] = {
        {"dark",
         false,
         {0x302D2B, 0xF0F0F0, 0x585450, 0x181614, 0x000000, 0x808080, 0x201E1C, 0xF0F0F0, 0xD08030, 0xFFFFFF,
          0x403C38}},
        {"contrast-black",
         true,
         {0x000000, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0x00FF00, 0x000000, 0xFFFFFF, 0xFFFF00, 0x000000,
          0xFFFFFF}},
        {"contrast-white",
         true,
         {0xFFFFFF, 0x000000, 0x000000, 0x808080, 0x000000, 0x006000, 0xFFFFFF, 0x000000, 0x800000, 0xFFFFFF,
          0xC0C0C0}},
    };
    COLORREF before[11];
    for (int i = 0; i < 11; ++i)
        before[i] = GetSysColor(indices[i]);
    for (const auto& scheme : schemes) {
        HIGHCONTRASTA contrast = {sizeof contrast, scheme.highContrast ? HCF_HIGHCONTRASTON : 0u, nullptr};
        SystemParametersInfoA(SPI_SETHIGHCONTRAST, sizeof contrast, &contrast, 0);
        SetSysColors(11, indices, scheme.colours);
        ASSERT_TRUE(open());
        ASSERT_TRUE(clickControl(&host, ID_BRUSH));
        leave();
        takeDialogs(scheme.name);
        leave();
    }
    HIGHCONTRASTA none = {sizeof none, 0, nullptr};
    SystemParametersInfoA(SPI_SETHIGHCONTRAST, sizeof none, &none, 0);
    SetSysColors(11, indices, before);
}

// A photograph as for the Screenshot, at 400 %, with a selection, a brush at the pointer, the map and the title.
TEST_F(DISABLED_Pictures, Zoomed)
{
    openPhotograph();
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    ASSERT_TRUE(movePointerOnCanvas(&host, 300, 200));
    for (int notch = 0; notch < 4; ++notch)
        ASSERT_TRUE(turnWheelAtPointer(120));
    ASSERT_TRUE(drawStroke(&host, {{160, 120}, {330, 110}, {350, 250}, {240, 290}, {150, 240}}));
    restPointer();
    take("zoomed-selection", windowRect(host.dialog));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{200, 150}, {260, 190}}));
    ASSERT_TRUE(movePointerOnCanvas(&host, 300, 160));
    ASSERT_TRUE(settle(&host));
    take("zoomed-brush", windowRect(host.dialog));
    command(host.palette, ID_CLOSE);
    ASSERT_TRUE(waitForReturn(&host));
}

// The picture of the README: a photograph with a selection on it. RETOUCH_PHOTO names a 24-bit bitmap file.
TEST_F(DISABLED_Pictures, Screenshot)
{
    openPhotograph();
    const LONG width = photo.width, height = photo.height;
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    std::vector<POINT> around;
    for (int i = 0; i < 40; ++i)
        around.push_back(
            {(LONG)(width * (0.295 + 0.165 * cos(i * 0.157))), (LONG)(height * (0.37 + 0.28 * sin(i * 0.157)))});
    ASSERT_TRUE(drawStroke(&host, around));
    ASSERT_TRUE(settle(&host));
    restPointer();
    const RECT window = windowRect(host.dialog), palette = windowRect(host.palette);
    take("screenshot", {window.left, window.top, palette.right, std::max(window.bottom, palette.bottom)});
    command(host.palette, ID_CLOSE);
    ASSERT_TRUE(waitForReturn(&host));
}
