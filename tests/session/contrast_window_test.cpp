// The contrast dialog as a window: its language, how it is held and dragged, what its reset buttons post,
// and which windows wait for it.
#include "tests/session/import_patch.h"
#include "tests/session/library_driver.h"
#include "tests/session/session_fixture.h"

constexpr int DRAG_CURSOR = 15001;

static BOOL CALLBACK takeContrastWindow(HWND window, LPARAM found)
{
    if (!IsWindowVisible(window) || !GetDlgItem(window, ID_CONTRAST_BAR) || !GetDlgItem(window, ID_RESET_CONTRAST))
        return TRUE;
    *(HWND*)found = window;
    return FALSE;
}

struct ContrastWindow : SessionTest {
    void SetUp() override
    {
        SessionTest::SetUp();
        palettePos = {20, 40};
        OffsetRect(&dialogRect, 400 - dialogRect.left, 300 - dialogRect.top);
    }

    HWND dialog() const
    {
        HWND found = nullptr;
        EnumThreadWindows(host.threadId, takeContrastWindow, (LPARAM)&found);
        return found;
    }

    RECT rectOf(int id) const
    {
        RECT rect = {};
        GetWindowRect(GetDlgItem(dialog(), id), &rect);
        return rect;
    }

    void openDialog()
    {
        ASSERT_TRUE(clickControl(&host, ID_CONTRAST));
        ASSERT_TRUE(waitUntil("the contrast dialog to open", [&] { return dialog() != nullptr; }));
    }

    void click(int id)
    {
        const RECT rect = rectOf(id);
        ASSERT_TRUE(movePointer(&host, {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(releaseButton(&host));
    }

    void closeDialog(int way)
    {
        click(way);
        ASSERT_TRUE(waitUntil("the contrast dialog to close", [&] { return !dialog(); }));
        ASSERT_TRUE(settle(&host));
    }
};

TEST_F(ContrastWindow, LibraryIsDisabledMeanwhile)
{
    ASSERT_TRUE(open());
    ASSERT_TRUE(toggleLibraryWindow(&host));
    ASSERT_TRUE(moveLibraryAside(&host));
    for (int way : {ID_CONTRAST_OK, ID_CONTRAST_CANCEL}) {
        EXPECT_TRUE(IsWindowEnabled(libraryWindow(host)));
        openDialog();
        EXPECT_FALSE(IsWindowEnabled(libraryWindow(host)));
        closeDialog(way);
        EXPECT_TRUE(IsWindowEnabled(libraryWindow(host)));
    }
    ASSERT_TRUE(toggleLibraryWindow(&host));
    removeLibraryDirectory(library);
}

static BOOL CALLBACK countContrastWindow(HWND window, LPARAM count)
{
    if (GetDlgItem(window, ID_CONTRAST_BAR) && GetDlgItem(window, ID_RESET_CONTRAST)) ++*(int*)count;
    return TRUE;
}

TEST_F(ContrastWindow, CommandFromOutsideOpensNoSecondOne)
{
    ASSERT_TRUE(open());
    openDialog();
    for (const int id : {ID_CONTRAST, ID_COLORS, ID_COLORS})
        SendMessageA(host.palette, WM_COMMAND, (WPARAM)id, 0);
    int windows = 0;
    EnumThreadWindows(host.threadId, countContrastWindow, (LPARAM)&windows);
    EXPECT_EQ(1, windows);
    closeDialog(ID_CONTRAST_CANCEL);
}

// Ended under a held bar it goes when the bar is let go, and until then no other comes.
TEST_F(ContrastWindow, EndedUnderAHeldBarItIsStillTheOnlyOne)
{
    ASSERT_TRUE(open());
    openDialog();
    const HWND contrast = dialog();
    const RECT bar = rectOf(ID_CONTRAST_BAR);
    ASSERT_TRUE(movePointer(&host, {(bar.left + bar.right) / 2, bar.bottom - 3}));
    ASSERT_TRUE(pressButton(&host));
    PostMessageA(contrast, WM_COMMAND, ID_CONTRAST_CANCEL, 0);
    PostMessageA(host.palette, WM_COMMAND, ID_CONTRAST, 0);
    ASSERT_TRUE(settle(&host));
    int windows = 0;
    EnumThreadWindows(host.threadId, countContrastWindow, (LPARAM)&windows);
    EXPECT_EQ(1, windows);
    ASSERT_TRUE(releaseButton(&host));
    ASSERT_TRUE(waitUntil("the contrast dialog to go", [&] { return !IsWindow(contrast); }));
}

static HCURSOR dragCursor;
static bool dragCursorShown;

static HCURSOR WINAPI watchCursor(HCURSOR cursor)
{
    dragCursorShown = dragCursorShown || cursor == dragCursor;
    return SetCursor(cursor);
}

TEST_F(ContrastWindow, IsDraggedByItsFace)
{
    ASSERT_TRUE(open());
    openDialog();
    dragCursor = LoadCursorA(library.module, MAKEINTRESOURCEA(DRAG_CURSOR));
    dragCursorShown = false;
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "SetCursor", (void*)watchCursor));
    RECT before;
    GetWindowRect(dialog(), &before);
    const RECT cancel = rectOf(ID_CONTRAST_CANCEL);
    const POINT grip = {(cancel.left + cancel.right) / 2, (cancel.bottom + before.bottom) / 2};
    ASSERT_TRUE(movePointer(&host, grip));
    const size_t first = seenCount();
    ASSERT_TRUE(pressButton(&host));
    ASSERT_TRUE(waitUntil("moving to start", [&] { return wasSeen(first, dialog(), WM_ENTERSIZEMOVE); }));
    ASSERT_TRUE(movePointer(&host, {grip.x + 20, grip.y + 30}));
    ASSERT_TRUE(movePointer(&host, {grip.x + 60, grip.y + 90}));
    ASSERT_TRUE(releaseButton(&host));
    ASSERT_TRUE(waitUntil("moving to end", [&] { return wasSeen(first, dialog(), WM_EXITSIZEMOVE); }));
    RECT moved;
    GetWindowRect(dialog(), &moved);
    EXPECT_EQ(before.left + 60, moved.left);
    EXPECT_EQ(before.top + 90, moved.top);
    EXPECT_TRUE(dragCursorShown);
    undoPatch(&patch);
    closeDialog(ID_CONTRAST_CANCEL);
}

// The message names no bar: its low word is the bar's new position, its high word half of the bar's handle.
TEST_F(ContrastWindow, ResetButtonsPostTheEndOfAScroll)
{
    ASSERT_TRUE(open());
    openDialog();
    for (int number = 0; number < 4; ++number) {
        const size_t first = seenCount();
        click(ID_RESET_CONTRAST + 2 * number);
        ASSERT_TRUE(settle(&host));
        const HWND bar = GetDlgItem(dialog(), ID_CONTRAST_BAR + number);
        const LPARAM packed = MAKELPARAM(number == 2 ? 50 : 0, (DWORD_PTR)bar & 0xFFFF);
        int posted = 0;
        for (const SeenMessage& seen : seenSince(first)) {
            if (seen.sent || seen.window != dialog() || seen.message != WM_VSCROLL) continue;
            ++posted;
            EXPECT_EQ((WPARAM)SB_ENDSCROLL, seen.wParam);
            EXPECT_EQ(packed, seen.lParam);
        }
        EXPECT_EQ(1, posted) << ID_RESET_CONTRAST + 2 * number;
    }
    closeDialog(ID_CONTRAST_CANCEL);
}

static const char* localeAnswer;

static int WINAPI fakeLocale(LCID locale, LCTYPE type, LPSTR buffer, int size)
{
    if (type != LOCALE_SABBREVLANGNAME) return GetLocaleInfoA(locale, type, buffer, size);
    lstrcpynA(buffer, localeAnswer, size);
    return lstrlenA(localeAnswer) + 1;
}

// It asks for the language each time it opens; without a dialog in it the English one comes.
TEST_F(ContrastWindow, OpensInTheLanguageOfTheMoment)
{
    ASSERT_TRUE(open());
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GetLocaleInfoA", (void*)fakeLocale));
    std::vector<std::string> captions;
    for (const char* locale : {"enu", "fra", "UKR", "RUS", "SVE"}) {
        localeAnswer = locale;
        openDialog();
        char text[128] = "";
        GetDlgItemTextA(dialog(), ID_RESET_CONTRAST, text, sizeof text);
        captions.push_back(text);
        closeDialog(ID_CONTRAST_CANCEL);
    }
    undoPatch(&patch);
    EXPECT_EQ("BB:Contrast", captions[0]);
    EXPECT_EQ("BB:Contraste", captions[1]);
    EXPECT_EQ(captions[3], captions[2]);
    EXPECT_NE(captions[0], captions[3]);
    EXPECT_EQ(captions[0], captions[4]);
}
