// The tool palette as it opens, what choosing does, and the language that it opens in.
#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "tests/session/import_patch.h"
#include "tests/session/screen_part.h"
#include "tests/session/session_fixture.h"

struct Palette : SessionTest {};

static void expectRange(const Host& host, int id, int low, int high)
{
    int actualLow = 0, actualHigh = 0;
    GetScrollRange(GetDlgItem(host.palette, id), SB_CTL, &actualLow, &actualHigh);
    EXPECT_EQ(low, actualLow) << id;
    EXPECT_EQ(high, actualHigh) << id;
}

TEST_F(Palette, OpensWithTheDefaults)
{
    ASSERT_TRUE(open());
    expectRange(host, ID_WIDTH, 1, 48);
    expectRange(host, ID_HEIGHT, 1, 48);
    expectRange(host, ID_OPACITY, 40, 100);
    EXPECT_EQ(16, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(16, scrollPosition(host, ID_HEIGHT));
    EXPECT_EQ(100, scrollPosition(host, ID_OPACITY));
    EXPECT_TRUE(isChecked(host, ID_LOCK));
    EXPECT_TRUE(isChecked(host, ID_CIRCLE));
    EXPECT_FALSE(isChecked(host, ID_RECTANGLE));
    EXPECT_TRUE(isChecked(host, ID_FULL));
    EXPECT_FALSE(isChecked(host, ID_SOFT));
    for (int tool = ID_CONTRAST; tool <= ID_COLORS; ++tool)
        EXPECT_FALSE(isChecked(host, tool)) << tool;
}

TEST_F(Palette, HasEveryControl)
{
    ASSERT_TRUE(open());
    static const int ids[] = {2,   8,   114, 116, 117, 118, 119, 120, 121, 122, 123, 124,
                              154, 190, 191, 200, 202, 204, 206, 208, 209, 212, 213, 214};
    for (int id : ids)
        EXPECT_NE(nullptr, GetDlgItem(host.palette, id)) << id;
    EXPECT_EQ(nullptr, GetDlgItem(host.palette, 115));
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(host.palette, ID_PREVIEW)));
}

TEST_F(Palette, BrushButtonChecksItselfAndSetsTheCursor)
{
    ASSERT_TRUE(open());
    const ULONG_PTR arrow = GetClassLongPtrA(host.canvas, GCLP_HCURSOR);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    EXPECT_TRUE(isChecked(host, ID_BRUSH));
    EXPECT_NE(arrow, GetClassLongPtrA(host.canvas, GCLP_HCURSOR));
    EXPECT_EQ(16, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(100, scrollPosition(host, ID_OPACITY));
}

TEST_F(Palette, LockedBarsMoveTogetherAndKeepTheirDifference)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 1));
    EXPECT_EQ(17, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(17, scrollPosition(host, ID_HEIGHT));
    ASSERT_TRUE(clickControl(&host, ID_LOCK));
    ASSERT_TRUE(clickScrollBar(&host, ID_HEIGHT, -1));
    EXPECT_EQ(17, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(16, scrollPosition(host, ID_HEIGHT));
    ASSERT_TRUE(clickControl(&host, ID_LOCK));
    ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 1));
    EXPECT_EQ(18, scrollPosition(host, ID_WIDTH));
    EXPECT_EQ(17, scrollPosition(host, ID_HEIGHT));
}

// Each tool has settings of its own: Rubber opens with the defaults, Brush comes back as it was left.
TEST_F(Palette, ToolsKeepTheirOwnSettings)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, 2));
    ASSERT_TRUE(clickControl(&host, ID_RECTANGLE));
    ASSERT_TRUE(clickControl(&host, ID_SOFT));
    const int width = scrollPosition(host, ID_WIDTH);
    EXPECT_EQ(24, width);
    ASSERT_TRUE(clickControl(&host, ID_RUBBER));
    EXPECT_EQ(16, scrollPosition(host, ID_WIDTH));
    EXPECT_TRUE(isChecked(host, ID_CIRCLE));
    EXPECT_TRUE(isChecked(host, ID_FULL));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    EXPECT_EQ(width, scrollPosition(host, ID_WIDTH));
    EXPECT_TRUE(isChecked(host, ID_RECTANGLE));
    EXPECT_TRUE(isChecked(host, ID_SOFT));
}

// The bar stores position * position / 100 and later shows the stored value.
TEST_F(Palette, OpacityComesBackSquared)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -1));
    const int shown = scrollPosition(host, ID_OPACITY);
    EXPECT_EQ(99, shown);
    ASSERT_TRUE(clickControl(&host, ID_RUBBER));
    EXPECT_EQ(100, scrollPosition(host, ID_OPACITY));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    EXPECT_EQ(shown * shown / 100, scrollPosition(host, ID_OPACITY));
}

TEST_F(Palette, SecondSessionStartsWithoutATool)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    saveAndCheck();
    ASSERT_TRUE(open());
    for (int tool = ID_CONTRAST; tool <= ID_COLORS; ++tool)
        EXPECT_FALSE(isChecked(host, tool)) << tool;
}

// The palette can be dragged by any point that is not a control.
TEST_F(Palette, IsDraggedByItsBackground)
{
    ASSERT_TRUE(open());
    RECT palette;
    GetWindowRect(host.palette, &palette);
    RECT preview;
    GetWindowRect(GetDlgItem(host.palette, ID_PREVIEW), &preview);
    const POINT grip = {(preview.left + preview.right) / 2, (preview.top + preview.bottom) / 2};
    ASSERT_TRUE(movePointer(&host, grip));
    const size_t first = seenCount();
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(waitUntil("moving to start", [&] { return wasSeen(first, host.palette, WM_ENTERSIZEMOVE); }));
    ASSERT_TRUE(movePointer(&host, {grip.x + 20, grip.y + 30}));
    ASSERT_TRUE(movePointer(&host, {grip.x + 60, grip.y + 90}));
    ASSERT_TRUE(releaseButton(&host));
    ASSERT_TRUE(waitUntil("moving to end", [&] { return wasSeen(first, host.palette, WM_EXITSIZEMOVE); }));
    RECT moved;
    GetWindowRect(host.palette, &moved);
    EXPECT_EQ(palette.left + 60, moved.left);
    EXPECT_EQ(palette.top + 90, moved.top);
}

static const char* localeAnswer;

static int WINAPI fakeLocale(LCID locale, LCTYPE type, LPSTR buffer, int size)
{
    if (type != LOCALE_SABBREVLANGNAME) return GetLocaleInfoA(locale, type, buffer, size);
    lstrcpynA(buffer, localeAnswer, size);
    return lstrlenA(localeAnswer) + 1;
}

static std::string captionOf(const Host& host, int id)
{
    char text[128] = "";
    GetDlgItemTextA(host.palette, id, text, sizeof text);
    return text;
}

TEST_F(Palette, OpensInEnglishUnderALocaleWithoutDialogs)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GetLocaleInfoA", (void*)fakeLocale));
    std::string english;
    for (const char* locale : {"ENU", "SVE", "sve", "", "Q"}) {
        SCOPED_TRACE(locale);
        localeAnswer = locale;
        ASSERT_TRUE(open());
        const std::string caption = captionOf(host, ID_BRUSH);
        EXPECT_NE(std::string::npos, caption.find("Brush")) << caption;
        closeAndCheck(snapshot(photo));
    }
    undoPatch(&patch);
}

TEST_F(Palette, OpensInTheUsersLanguage)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GetLocaleInfoA", (void*)fakeLocale));
    std::vector<std::string> captions;
    for (const char* locale : {"ENU", "FRA", "DEU"}) {
        localeAnswer = locale;
        ASSERT_TRUE(open());
        captions.push_back(captionOf(host, ID_CLOSE));
        closeAndCheck(snapshot(photo));
    }
    undoPatch(&patch);
    EXPECT_NE(captions[0], captions[1]);
    EXPECT_NE(captions[0], captions[2]);
    EXPECT_NE(captions[1], captions[2]);
}

static int pixelsLike(const reference::StoredPicture& picture, bool (*matches)(int red, int green, int blue))
{
    const int stride = reference::strideOf(picture.width);
    int found = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const uint8_t* pixel = &picture.bytes[(size_t)(y * stride + x * 3)];
            found += matches(pixel[2], pixel[1], pixel[0]);
        }
    return found;
}

// The control library leaves the pictures of the two buttons that end the session to the palette.
TEST_F(Palette, CloseAndSaveShowPictures)
{
    ASSERT_TRUE(open());
    const auto outline = [](int r, int g, int b) { return r < 60 && g < 60 && b < 70; };
    const auto blue = [](int r, int g, int b) { return b > 110 && b > r + 40 && r < 130 && g < 190; };
    EXPECT_GT(pixelsLike(shownBy(GetDlgItem(host.palette, ID_CLOSE)), outline), 20);
    EXPECT_GT(pixelsLike(shownBy(GetDlgItem(host.palette, ID_SAVE)), blue), 20);
}

static CHOOSECOLORA offered;  // what the colour dialog was called with
static COLORREF offeredCustom[16];
static int timesOffered;
static COLORREF answeredColour;  // what it answers; CLR_INVALID: cancelled

static BOOL WINAPI fakeChooseColor(CHOOSECOLORA* dialog)
{
    offered = *dialog;
    std::copy(dialog->lpCustColors, dialog->lpCustColors + 16, offeredCustom);
    ++timesOffered;
    if (answeredColour == CLR_INVALID) return FALSE;
    for (int i = 0; i < 16; ++i)
        dialog->lpCustColors[i] = RGB(i, i, i);  // as if the user had defined some
    dialog->rgbResult = answeredColour;
    return TRUE;
}

// Pressed once, Colors arms the picker; pressed again, it asks.
TEST_F(Palette, ColorsPressedAgainOffersTheColourDialog)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "ChooseColorA", (void*)fakeChooseColor));
    timesOffered = 0;
    answeredColour = RGB(10, 200, 30);
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(clickControl(&host, ID_COLORS));
    EXPECT_EQ(0, timesOffered);
    ASSERT_TRUE(clickControl(&host, ID_COLORS));
    ASSERT_EQ(1, timesOffered);
    EXPECT_EQ(sizeof offered, offered.lStructSize);
    EXPECT_EQ(host.palette, offered.hwndOwner);
    EXPECT_EQ((DWORD)(CC_RGBINIT | CC_FULLOPEN), offered.Flags);
    EXPECT_EQ(0x00C0C0FFu, offered.rgbResult);
    for (COLORREF custom : offeredCustom)
        EXPECT_EQ(0x00C0C0FFu, custom);

    answeredColour = CLR_INVALID;
    for (int times = 2; times <= 3; ++times) {
        ASSERT_TRUE(clickControl(&host, ID_COLORS));
        ASSERT_EQ(times, timesOffered);
        EXPECT_EQ(RGB(10, 200, 30), offered.rgbResult) << "the colour chosen first stays when the dialog is cancelled";
        for (COLORREF custom : offeredCustom)
            EXPECT_EQ(RGB(10, 200, 30), custom) << "custom colours are not kept";
    }
    undoPatch(&patch);
}

struct Ticks {
    HWND window;
    UINT_PTR id;
    UINT interval;
};
static std::vector<Ticks> timersSet, timersKilled;

static UINT_PTR WINAPI fakeSetTimer(HWND window, UINT_PTR id, UINT interval, TIMERPROC)
{
    timersSet.push_back({window, id, interval});
    return id;
}

static BOOL WINAPI fakeKillTimer(HWND window, UINT_PTR id)
{
    timersKilled.push_back({window, id, 0});
    return TRUE;
}

// (width + height) x 2 + 55 milliseconds from one spray to the next.
TEST_F(Palette, AerographeSpraysSlowerWithALargerBrush)
{
    ImportPatch setting, killing;
    ASSERT_TRUE(patchImport(&setting, library.module, "SetTimer", (void*)fakeSetTimer));
    ASSERT_TRUE(patchImport(&killing, library.module, "KillTimer", (void*)fakeKillTimer));
    timersSet.clear();
    timersKilled.clear();
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}, {70, 60}}));
    EXPECT_TRUE(timersSet.empty()) << "no other tool has a timer";
    ASSERT_TRUE(clickControl(&host, ID_AEROGRAPHE));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}}));
    for (int page = 0; page < 2; ++page)
        ASSERT_TRUE(clickScrollBar(&host, ID_WIDTH, -2));
    EXPECT_EQ(1, scrollPosition(host, ID_HEIGHT));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}}));
    ASSERT_EQ(2u, timersSet.size());
    EXPECT_EQ(119u, timersSet[0].interval);
    EXPECT_EQ(59u, timersSet[1].interval);
    ASSERT_EQ(2u, timersKilled.size());
    for (const std::vector<Ticks>& timers : {timersSet, timersKilled})
        for (const Ticks& timer : timers) {
            EXPECT_EQ(host.canvas, timer.window);
            EXPECT_EQ(1u, timer.id);
        }
    undoPatch(&killing);
    undoPatch(&setting);
}
