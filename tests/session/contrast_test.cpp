// The contrast dialog as it stands on the screen: where it opens, what its preview shows, what OK and
// Cancel leave behind. Pixels are held against the plain reference of the colour rules.
#include <algorithm>
#include <cstring>

#include "tests/reference/colour_reference.h"
#include "tests/session/import_patch.h"
#include "tests/session/screen_part.h"
#include "tests/session/screen_picture.h"
#include "tests/session/session_fixture.h"

constexpr int TEMPLATE_HEIGHT = 115;  // dialog units
constexpr reference::Values NEUTRAL = {0, 0, 50, 0, 0};

typedef std::vector<uint8_t> Block;

static reference::StoredPicture imageOf(const Block& block, int width, int height)
{
    const uint8_t* rows = block.data() + sizeof(BITMAPINFOHEADER);
    return {width, height, Block(rows, rows + (size_t)reference::strideOf(width) * (size_t)height)};
}

// The block with every row adjusted; header and guard as they are.
static Block adjustedBlock(const Block& block, const HostImage& photo, const reference::Values& values)
{
    const reference::StoredPicture adjusted = reference::adjustImage(imageOf(block, photo.width, photo.height), values);
    Block result = block;
    memcpy(result.data() + sizeof(BITMAPINFOHEADER), adjusted.bytes.data(), adjusted.bytes.size());
    return result;
}

// The preview before it is adjusted. Stored row r takes the source row of r - 1.
static reference::StoredPicture sampled(const reference::StoredPicture& source, SIZE client)
{
    long long width = (long long)source.width * client.cy / source.height, height = client.cy;
    if (width > client.cx) {
        width = client.cx;
        height = (long long)source.height * client.cx / source.width;
    }
    const size_t stride = (size_t)reference::strideOf((int)width),
                 sourceStride = (size_t)reference::strideOf(source.width);
    reference::StoredPicture preview = {(int)width, (int)height, Block(stride * (size_t)height)};
    for (long long row = 0; row < height; ++row) {
        const long long from = row ? std::min((row - 1) * source.height / height, (long long)source.height - 1) : 0;
        for (long long x = 0; x < width; ++x) {
            const long long column = std::min(x * source.width / width, (long long)source.width - 1);
            memcpy(&preview.bytes[stride * (size_t)row + 3 * (size_t)x],
                   &source.bytes[sourceStride * (size_t)from + 3 * (size_t)column], 3);
        }
    }
    return preview;
}

static BOOL CALLBACK findContrastDialog(HWND window, LPARAM lp)
{
    const bool found = IsWindowVisible(window) && GetDlgItem(window, ID_RESET_HUE) && GetDlgItem(window, ID_HUE_BAR);
    if (found) *(HWND*)lp = window;
    return !found;
}

struct Contrast : SessionTest {
    HWND dialog = nullptr;
    Block before;  // the host's image when the session opened

    void SetUp() override
    {
        SessionTest::SetUp();
        palettePos = {20, 40};
    }

    bool findDialog()
    {
        dialog = nullptr;
        EnumThreadWindows(host.threadId, findContrastDialog, (LPARAM)&dialog);
        return dialog != nullptr;
    }

    // Host window and palette side by side: a click on one would otherwise bring it over the other.
    void openSessionHere()
    {
        OffsetRect(&dialogRect, 100 - dialogRect.left, 0);
        spoilPadding();
        ASSERT_TRUE(open());
        before = snapshot(photo);
    }

    void openDialog()
    {
        if (!host.running) openSessionHere();
        ASSERT_TRUE(clickControl(&host, ID_CONTRAST));
        ASSERT_TRUE(waitUntil("the contrast dialog to open", [&] { return findDialog(); }));
        leavePalette();
    }

    // A host need not keep the bytes at the rows' ends at 0.
    void spoilPadding()
    {
        const size_t stride = (size_t)reference::strideOf(photo.width);
        uint8_t* rows = (uint8_t*)GlobalLock(photo.block) + sizeof(BITMAPINFOHEADER);
        for (int y = 0; y < photo.height; ++y)
            for (size_t x = (size_t)photo.width * 3; x < stride; ++x)
                rows[stride * (size_t)y + x] = 0x5A;
        GlobalUnlock(photo.block);
    }

    // Otherwise the palette button's tooltip would come up over the preview.
    void leavePalette() { ASSERT_TRUE(movePointer(&host, middleOf(ID_CONTRAST_BAR))); }

    RECT controlRect(int id) const
    {
        RECT rect = {};
        GetWindowRect(GetDlgItem(dialog, id), &rect);
        return rect;
    }

    POINT middleOf(int id) const
    {
        const RECT rect = controlRect(id);
        return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    }

    void click(int id)
    {
        ASSERT_TRUE(movePointer(&host, middleOf(id)));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(releaseButton(&host));
    }

    void clickToClose(int id)
    {
        click(id);
        ASSERT_TRUE(waitUntil("the contrast dialog to close", [&] { return !findDialog(); }));
        ASSERT_TRUE(settle(&host));
    }

    int position(int bar) const { return GetScrollPos(GetDlgItem(dialog, bar), SB_CTL); }

    void scroll(int bar, int code, int value = 0)
    {
        PostMessageA(dialog, WM_VSCROLL, MAKEWPARAM(code, value), (LPARAM)GetDlgItem(dialog, bar));
        ASSERT_TRUE(settle(&host));
    }

    void drag(int bar, int value) { scroll(bar, SB_THUMBTRACK, value); }

    void set(const reference::Values& values)
    {
        drag(ID_CONTRAST_BAR, values.contrast);
        drag(ID_BRIGHTNESS_BAR, values.brightness);
        drag(ID_SATURATION_BAR, values.saturation);
        drag(ID_HUE_BAR, values.hue);
        scroll(ID_HUE_BAR, SB_ENDSCROLL);
    }

    RECT previewOnScreen(const reference::StoredPicture& preview) const
    {
        RECT client;
        GetClientRect(dialog, &client);
        RECT rect = {client.right - preview.width, 0, client.right, preview.height};
        MapWindowPoints(dialog, nullptr, (POINT*)&rect, 2);
        return rect;
    }

    reference::StoredPicture preview() const
    {
        RECT client;
        GetClientRect(dialog, &client);
        return sampled(imageOf(before, photo.width, photo.height), {client.right, client.bottom});
    }

    void expectShown(const reference::StoredPicture& expected)
    {
        if (expected.width == 0) return;  // no room: no preview
        const RECT place = previewOnScreen(expected);
        // Of a narrow image's preview the last bar covers a few columns.
        const RECT free = {controlRect(ID_HUE_BAR).right, 0, GetSystemMetrics(SM_CXSCREEN),
                           GetSystemMetrics(SM_CYSCREEN)};
        RECT visible;
        ASSERT_TRUE(IntersectRect(&visible, &place, &free));
        const size_t skip = (size_t)(visible.left - place.left) * 3;
        const reference::StoredPicture shown = screenPart(visible);
        const size_t stride = (size_t)reference::strideOf(expected.width),
                     shownStride = (size_t)reference::strideOf(shown.width);
        const int below = place.bottom - visible.bottom;
        for (int row = 0; row < shown.height; ++row) {
            if (!memcmp(&expected.bytes[stride * (size_t)(row + below) + skip], &shown.bytes[shownStride * (size_t)row],
                        (size_t)shown.width * 3))
                continue;
            ADD_FAILURE() << "the preview on the screen differs in row " << row << " from below";
            savePicture("preview");
            return;
        }
    }

    void expectPreview(const reference::Values& values) { expectShown(reference::adjustImage(preview(), values)); }

    void expectGeometry()
    {
        RECT window, client, button, bar = controlRect(ID_HUE_BAR), units = {0, 0, 193, TEMPLATE_HEIGHT};
        GetWindowRect(dialog, &window);
        GetClientRect(dialog, &client);
        GetWindowRect(GetDlgItem(host.palette, ID_CONTRAST), &button);
        MapWindowPoints(nullptr, dialog, (POINT*)&bar, 2);
        MapDialogRect(dialog, &units);
        EXPECT_EQ(units.bottom, client.bottom);
        const LONG height = window.bottom - window.top;
        const LONG width = bar.right + (LONG)((long long)height * photo.width / photo.height);
        EXPECT_EQ(width, window.right - window.left);
        const LONG left = std::min(button.right, GetSystemMetrics(SM_CXSCREEN) - width);
        const LONG top = std::min(button.top, GetSystemMetrics(SM_CYSCREEN) - height);
        EXPECT_EQ(std::max(0L, left), window.left);
        EXPECT_EQ(std::max(0L, top), window.top);
    }

    void expectAfterOk(const reference::Values& values)
    {
        const Block expected = adjustedBlock(before, photo, values);
        EXPECT_FALSE(expected == before) << "a picture that does not change proves nothing";
        EXPECT_TRUE(expected == snapshot(photo))
            << "contrast " << values.contrast << " brightness " << values.brightness << " saturation "
            << values.saturation << " hue " << values.hue;
    }
};

TEST_F(Contrast, OpensBesideItsButtonWithTheImageAsItIs)
{
    openDialog();
    expectGeometry();
    expectShown(preview());
    for (int bar : {ID_CONTRAST_BAR, ID_BRIGHTNESS_BAR, ID_HUE_BAR})
        EXPECT_EQ(0, position(bar)) << bar;
    EXPECT_EQ(50, position(ID_SATURATION_BAR));
}

TEST_F(Contrast, PreviewsOfOddImages)
{
    static const SIZE sizes[] = {{400, 100}, {100, 400}, {1, 1}, {6000, 4000}, {2500, 60}, {3, 700}};
    for (const SIZE& size : sizes) {
        SCOPED_TRACE(testing::Message() << size.cx << " x " << size.cy);
        usePhoto(size.cx, size.cy, std::clamp((int)size.cx, 120, 900), std::clamp((int)size.cy, 90, 600));
        openDialog();
        expectGeometry();
        expectShown(preview());
        const reference::Values values = {-30, 12, 80, 40, 0};
        set(values);
        expectPreview(values);
        clickToClose(ID_CONTRAST_OK);
        EXPECT_TRUE(adjustedBlock(before, photo, values) == snapshot(photo));
        saveAndCheck();
    }
}

TEST_F(Contrast, StaysOnTheScreen)
{
    usePhoto(400, 100);
    for (const POINT place : {POINT{1480, 40}, POINT{1480, 1000}, POINT{20, 1100}}) {
        SCOPED_TRACE(testing::Message() << "palette at " << place.x << ", " << place.y);
        palettePos = place;
        openDialog();
        expectGeometry();
        expectShown(preview());
        RECT window;
        GetWindowRect(dialog, &window);
        EXPECT_LE(window.right, GetSystemMetrics(SM_CXSCREEN));
        EXPECT_LE(window.bottom, GetSystemMetrics(SM_CYSCREEN));
        clickToClose(ID_CONTRAST_CANCEL);
        closeAndCheck(before);
    }
}

// While saturation and hue are neutral every movement shows at once; otherwise only the end of one does.
TEST_F(Contrast, FollowsEveryMovementWhileTheColoursAreNeutral)
{
    openDialog();
    drag(ID_CONTRAST_BAR, -40);
    expectPreview({-40, 0, 50, 0, 0});
    scroll(ID_BRIGHTNESS_BAR, SB_LINEDOWN);
    scroll(ID_BRIGHTNESS_BAR, SB_PAGEDOWN);
    expectPreview({-40, 11, 50, 0, 0});
    drag(ID_SATURATION_BAR, 20);
    expectPreview({-40, 11, 50, 0, 0});
    drag(ID_CONTRAST_BAR, 30);
    expectPreview({-40, 11, 50, 0, 0});
    scroll(ID_CONTRAST_BAR, SB_ENDSCROLL);
    expectPreview({30, 11, 20, 0, 0});
    drag(ID_SATURATION_BAR, 50);
    expectPreview({30, 11, 50, 0, 0});
    drag(ID_HUE_BAR, -90);
    expectPreview({30, 11, 50, 0, 0});
    scroll(ID_HUE_BAR, SB_ENDSCROLL);
    expectPreview({30, 11, 50, -90, 0});
}

// The same with the real pointer on the bars' thumbs.
TEST_F(Contrast, DraggedThumbs)
{
    openDialog();
    for (const int bar : {ID_CONTRAST_BAR, ID_SATURATION_BAR}) {
        const POINT grip = middleOf(bar);  // where the thumb is while the bar is neutral
        ASSERT_TRUE(movePointer(&host, grip));
        ASSERT_TRUE(pressButton(&host));
        const int contrast = position(ID_CONTRAST_BAR);
        ASSERT_TRUE(movePointer(&host, {grip.x, grip.y + 12}));
        ASSERT_TRUE(movePointer(&host, {grip.x, grip.y + 25}));
        const int dragged = position(bar);
        EXPECT_GT(dragged, bar == ID_CONTRAST_BAR ? 5 : 55);
        if (bar == ID_CONTRAST_BAR) expectPreview({dragged, 0, 50, 0, 0});
        if (bar == ID_SATURATION_BAR) expectPreview({contrast, 0, 50, 0, 0});
        ASSERT_TRUE(releaseButton(&host));
        if (bar == ID_SATURATION_BAR) expectPreview({contrast, 0, position(bar), 0, 0});
    }
}

// A click between thumb and arrow moves the thumb under the pointer; the press must not stay drawn on it.
TEST_F(Contrast, BarsLookReleasedAfterAClickBetweenThumbAndArrow)
{
    openDialog();
    for (const int bar : {ID_CONTRAST_BAR, ID_BRIGHTNESS_BAR, ID_SATURATION_BAR, ID_HUE_BAR}) {
        const int start = position(bar);
        const RECT rect = controlRect(bar);
        ASSERT_TRUE(movePointer(&host, {(rect.left + rect.right) / 2, (rect.top + 2 * rect.bottom) / 3}));
        ASSERT_TRUE(pressButton(&host));
        ASSERT_TRUE(releaseButton(&host));
        EXPECT_EQ(start + 10, position(bar));
        ASSERT_TRUE(movePointer(&host, {(rect.left + rect.right) / 2, rect.bottom + 2}));
        ASSERT_TRUE(settle(&host));
        const reference::StoredPicture shown = screenPart(rect);
        RedrawWindow(GetDlgItem(dialog, bar), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        ASSERT_TRUE(settle(&host));
        if (shown.bytes == screenPart(rect).bytes) continue;
        ADD_FAILURE() << "bar " << bar << " is not drawn as it is";
        savePicture("bar");
    }
}

TEST_F(Contrast, BarsStopAtTheirEnds)
{
    struct End {
        int bar, low, high;
    };
    openDialog();
    for (const End& end : {End{ID_CONTRAST_BAR, -100, 100}, End{ID_BRIGHTNESS_BAR, -100, 100},
                           End{ID_SATURATION_BAR, 0, 100}, End{ID_HUE_BAR, -127, 127}}) {
        drag(end.bar, -1000);
        EXPECT_EQ(end.low, position(end.bar));
        scroll(end.bar, SB_LINEUP);
        EXPECT_EQ(end.low, position(end.bar));
        scroll(end.bar, SB_PAGEDOWN);
        EXPECT_EQ(end.low + 10, position(end.bar));
        drag(end.bar, 1000);
        EXPECT_EQ(end.high, position(end.bar));
    }
}

TEST_F(Contrast, ResetButtons)
{
    openDialog();
    reference::Values values = {-35, 20, 85, 60, 0};
    set(values);
    struct Reset {
        int button, bar, neutral;
        int reference::Values::*value;
    };
    const Reset resets[] = {
        {ID_RESET_CONTRAST, ID_CONTRAST_BAR, 0, &reference::Values::contrast},
        {ID_RESET_BRIGHTNESS, ID_BRIGHTNESS_BAR, 0, &reference::Values::brightness},
        {ID_RESET_SATURATION, ID_SATURATION_BAR, 50, &reference::Values::saturation},
        {ID_RESET_HUE, ID_HUE_BAR, 0, &reference::Values::hue},
    };
    for (const Reset& reset : resets) {
        SCOPED_TRACE(reset.button);
        click(reset.button);
        leavePalette();
        values.*reset.value = reset.neutral;
        EXPECT_EQ(reset.neutral, position(reset.bar));
        expectPreview(values);
    }
}

TEST_F(Contrast, OkAdjustsTheWholeImage)
{
    static const reference::Values settings[] = {
        NEUTRAL,
        {-100, -100, 50, 0, 0},
        {100, 100, 50, 0, 0},
        {-100, 100, 0, 127, 0},
        {37, -64, 50, 0, 0},
        {0, 0, 100, 0, 0},
        {0, 0, 0, 0, 0},
        {0, 0, 50, -127, 0},
        {0, 0, 50, 1, 0},
        {12, -9, 71, 84, 0},
        {-55, 8, 33, -42, 0},
        {99, -99, 99, -126, 0},
    };
    int width = 61;
    for (const reference::Values& values : settings) {
        usePhoto(width++, 83, 200, 150);  // all four lengths of padding
        openDialog();
        set(values);
        expectPreview(values);
        clickToClose(ID_CONTRAST_OK);
        expectAfterOk(values);
        saveAndCheck();
        expectAfterOk(values);
    }
}

TEST_F(Contrast, CancelChangesNothing)
{
    openDialog();
    set({-60, 30, 90, 70, 0});
    clickToClose(ID_CONTRAST_CANCEL);
    EXPECT_TRUE(before == snapshot(photo));
    saveAndCheck();
    EXPECT_TRUE(before == snapshot(photo));
}

TEST_F(Contrast, HostWindowIsDisabledMeanwhile)
{
    openSessionHere();
    for (int way : {ID_CONTRAST_OK, ID_CONTRAST_CANCEL}) {
        EXPECT_TRUE(IsWindowEnabled(host.dialog));
        openDialog();
        EXPECT_FALSE(IsWindowEnabled(host.dialog));
        EXPECT_FALSE(IsWindowEnabled(host.palette));
        clickToClose(way);
        EXPECT_TRUE(IsWindowEnabled(host.dialog));
        EXPECT_TRUE(IsWindowEnabled(host.palette));
        EXPECT_FALSE(isChecked(host, ID_CONTRAST));
    }
}

// Notes each cursor that the library sets, and whether the image had been changed by then.
struct CursorChange {
    HCURSOR cursor, before;
    bool imageChanged;
};
static std::vector<CursorChange> cursorChanges;
static const HostImage* watchedImage;
static Block watchedBytes;

static HCURSOR WINAPI noteCursor(HCURSOR cursor)
{
    const bool changed = snapshot(*watchedImage) != watchedBytes;
    const HCURSOR was = SetCursor(cursor);
    cursorChanges.push_back({cursor, was, changed});
    return was;
}

TEST_F(Contrast, WaitCursorShowsWhileTheImageIsAdjusted)
{
    openDialog();
    set({-20, 10, 50, 0, 0});
    watchedImage = &photo;
    watchedBytes = before;
    cursorChanges.clear();
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "SetCursor", (void*)noteCursor));
    clickToClose(ID_CONTRAST_OK);
    undoPatch(&patch);
    const HCURSOR wait = LoadCursorA(nullptr, (LPCSTR)IDC_WAIT);
    size_t shown = 0;
    while (shown < cursorChanges.size() && cursorChanges[shown].cursor != wait)
        ++shown;
    ASSERT_LT(shown + 1, cursorChanges.size()) << "set, and put back";
    EXPECT_FALSE(cursorChanges[shown].imageChanged);
    EXPECT_TRUE(cursorChanges[shown + 1].imageChanged);
    EXPECT_EQ(cursorChanges[shown].before, cursorChanges[shown + 1].cursor);
}

TEST_F(Contrast, AdjustedImageIsWhatRubberAndCloseGiveBack)
{
    openDialog();
    const reference::Values values = {-20, 10, 70, 30, 0};
    set(values);
    clickToClose(ID_CONTRAST_OK);
    expectAfterOk(values);
    const Block adjusted = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}}));
    EXPECT_FALSE(adjusted == snapshot(photo));
    ASSERT_TRUE(clickControl(&host, ID_RUBBER));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}}));  // a dab at each event, of the same size
    EXPECT_TRUE(adjusted == snapshot(photo)) << "Rubber must restore the adjusted image";
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}, {130, 90}}));
    closeAndCheck(adjusted);
}

// Undo knows nothing of the adjustment: it puts back the stroke's rectangle as it was before the stroke.
TEST_F(Contrast, UndoPutsBackTheKeptRectangleOfAnEarlierStroke)
{
    openSessionHere();
    ASSERT_TRUE(clickControl(&host, ID_BRUSH));
    ASSERT_TRUE(drawStroke(&host, {{60, 60}, {130, 90}}));
    openDialog();
    const reference::Values values = {-20, 10, 50, 0, 0};
    set(values);
    clickToClose(ID_CONTRAST_OK);
    Block expected = snapshot(photo);
    ASSERT_TRUE(clickControl(&host, ID_UNDO));
    const size_t stride = (size_t)reference::strideOf(photo.width);
    for (int y = 60 - 9; y < 90 + 10; ++y) {  // half a brush, a margin, and below one row more
        const size_t row = sizeof(BITMAPINFOHEADER) + stride * (size_t)(photo.height - 1 - y);
        memcpy(&expected[row + 3 * (60 - 9)], &before[row + 3 * (60 - 9)], 3 * (130 + 9 - (60 - 9)));
    }
    EXPECT_TRUE(expected == snapshot(photo));
}

TEST_F(Contrast, CanvasShowsTheAdjustedImage)
{
    palettePos = {700, 600};
    openDialog();
    const reference::Values values = {-50, -30, 50, 0, 0};
    set(values);
    clickToClose(ID_CONTRAST_OK);
    RECT canvas;
    GetClientRect(host.canvas, &canvas);
    ASSERT_EQ(photo.width, canvas.right);
    const reference::StoredPicture shown = shownBy(host.canvas),
                                   expected = imageOf(snapshot(photo), photo.width, photo.height);
    for (size_t row = 0; row < (size_t)photo.height; ++row) {
        const size_t at = row * (size_t)reference::strideOf(photo.width);
        ASSERT_EQ(0, memcmp(&shown.bytes[at], &expected.bytes[at], (size_t)photo.width * 3)) << row;
    }
}

// Also run by hand, in the 64-bit build: too large for every run.
TEST_F(Contrast, DISABLED_HundredMegapixels)
{
    usePhoto(11600, 8700, 800, 600);
    openDialog();
    expectShown(preview());
    const reference::Values values = {-20, 10, 70, 30, 0};
    set(values);
    expectPreview(values);
    const DWORD start = GetTickCount();
    clickToClose(ID_CONTRAST_OK);
    printf("OK took %u ms\n", (unsigned)(GetTickCount() - start));
    expectAfterOk(values);
}
