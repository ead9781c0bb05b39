// The tool palette as it opens, what choosing does, and the language that it opens in.
#include "tests/session/import_patch.h"
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
    for (int tool = 114; tool <= 124; ++tool)
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
    ASSERT_TRUE(clickControl(&host, 118));
    EXPECT_EQ(16, scrollPosition(host, ID_WIDTH));
    EXPECT_TRUE(isChecked(host, ID_CIRCLE));
    EXPECT_TRUE(isChecked(host, ID_FULL));
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    EXPECT_EQ(width, scrollPosition(host, ID_WIDTH));
    EXPECT_TRUE(isChecked(host, ID_RECTANGLE));
    EXPECT_TRUE(isChecked(host, ID_SOFT));
}

// The bar stores position * position / 100 and later shows the stored value: that is meant.
TEST_F(Palette, OpacityComesBackSquared)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(clickScrollBar(&host, ID_OPACITY, -1));
    const int shown = scrollPosition(host, ID_OPACITY);
    EXPECT_EQ(99, shown);
    ASSERT_TRUE(clickControl(&host, 118));
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
    for (int tool = 114; tool <= 124; ++tool)
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
