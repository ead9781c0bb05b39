#include "controls/button_paint.h"

#include "controls/button_picture.h"
#include "controls/button_record.h"
#include "controls/caption.h"
#include "controls/caption_font.h"
#include "controls/superclass.h"

constexpr int TEXT_LENGTH = 512;

// All that decides how a button looks right now.
struct ButtonLook {
    LONG style;
    bool pressed, checked, mixed, disabled, hot, isDefault;
    bool focusShown;   // has the focus, and focus rectangles are shown
    bool prefixShown;  // access keys are underlined; else `text` has no marks for them
    HBITMAP picture;   // null: the caption is drawn
    bool ownPicture;   // the picture is the one given for this state, no stand-in
    wchar_t text[TEXT_LENGTH];
};

typedef void (*DrawKind)(HDC dc, const RECT& client, const ButtonLook& look);

static COLORREF mixColours(int first, int second, int percentSecond)
{
    const COLORREF a = GetSysColor(first), b = GetSysColor(second);
    const auto mix = [percentSecond](int x, int y) { return (x * (100 - percentSecond) + y * percentSecond) / 100; };
    return RGB(mix(GetRValue(a), GetRValue(b)), mix(GetGValue(a), GetGValue(b)), mix(GetBValue(a), GetBValue(b)));
}

static void fillColour(HDC dc, const RECT& rect, COLORREF colour)
{
    SetBkColor(dc, colour);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
}

// A frame of one pixel, with one colour on the left and top sides and one on the others.
static void drawFrame(HDC dc, const RECT& rect, COLORREF leftTop, COLORREF rightBottom)
{
    fillColour(dc, {rect.left, rect.top, rect.right, rect.top + 1}, leftTop);
    fillColour(dc, {rect.left, rect.top, rect.left + 1, rect.bottom}, leftTop);
    fillColour(dc, {rect.right - 1, rect.top, rect.right, rect.bottom}, rightBottom);
    fillColour(dc, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, rightBottom);
}

static RECT shrunk(RECT rect, int by)
{
    InflateRect(&rect, -by, -by);
    return rect;
}

static void drawFocus(HDC dc, const RECT& rect)
{
    SetTextColor(dc, RGB(0, 0, 0));
    SetBkColor(dc, RGB(255, 255, 255));
    DrawFocusRect(dc, &rect);
}

// Text

static UINT horizontalFormat(LONG style, UINT usual)
{
    switch (style & BS_CENTER) {
    case BS_LEFT: return DT_LEFT;
    case BS_RIGHT: return DT_RIGHT;
    case BS_CENTER: return DT_CENTER;
    default: return usual;
    }
}

static LONG placeVertically(LONG style, const RECT& room, LONG height)
{
    switch (style & BS_VCENTER) {
    case BS_TOP: return room.top;
    case BS_BOTTOM: return room.bottom - height;
    default: return room.top + (room.bottom - room.top - height) / 2;
    }
}

// Draws the caption on one line; on several when it is too wide for one. Returns where it stands.
static RECT drawCaption(HDC dc, const RECT& room, const ButtonLook& look, UINT usualFormat)
{
    const UINT horizontal = horizontalFormat(look.style, usualFormat);
    UINT format = horizontal | (look.prefixShown ? 0 : DT_NOPREFIX) | DT_SINGLELINE;
    RECT measured = room;
    DrawTextW(dc, look.text, -1, &measured, format | DT_CALCRECT);
    if (look.style & BS_MULTILINE || measured.right - measured.left > room.right - room.left) {
        format = (format & ~(UINT)DT_SINGLELINE) | DT_WORDBREAK | DT_END_ELLIPSIS;
        measured = room;
        DrawTextW(dc, look.text, -1, &measured, format | DT_CALCRECT);
    }
    const LONG height = measured.bottom - measured.top, width = measured.right - measured.left;
    RECT place = room;
    place.top = placeVertically(look.style, room, height);
    place.bottom = place.top + height;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(look.disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    DrawTextW(dc, look.text, -1, &place, format);

    if (horizontal == DT_CENTER) place.left += (room.right - room.left - width) / 2;
    if (horizontal == DT_RIGHT) place.left = place.right - width;
    place.right = place.left + width;
    return place;
}

// Push buttons, and whatever looks like one

// High contrast: the system's colours and nothing between them.
static void drawPlainFace(HDC dc, const RECT& client, const ButtonLook& look)
{
    const bool lit = look.pressed || look.checked;
    const COLORREF edge = GetSysColor(look.disabled ? COLOR_GRAYTEXT : look.hot ? COLOR_HIGHLIGHT : COLOR_BTNTEXT);
    fillColour(dc, client, GetSysColor(COLOR_BTNFACE));
    drawFrame(dc, client, edge, edge);
    if (!lit) return;
    const COLORREF mark = GetSysColor(look.disabled ? COLOR_GRAYTEXT : COLOR_HIGHLIGHT);
    drawFrame(dc, client, mark, mark);
    drawFrame(dc, shrunk(client, 1), mark, mark);
}

static bool highContrast()
{
    HIGHCONTRASTW scheme = {sizeof scheme, 0, nullptr};
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof scheme, &scheme, 0) && scheme.dwFlags & HCF_HIGHCONTRASTON;
}

static void drawDisabledFace(HDC dc, const RECT& client)
{
    fillColour(dc, client, GetSysColor(COLOR_BTNFACE));
    const COLORREF faint = mixColours(COLOR_BTNFACE, COLOR_BTNSHADOW, 40);
    drawFrame(dc, client, faint, faint);
}

static void drawPressedFace(HDC dc, const RECT& client)
{
    const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
    fillColour(dc, client, mixColours(COLOR_BTNFACE, COLOR_BTNSHADOW, 25));
    drawFrame(dc, client, mixColours(COLOR_BTNSHADOW, COLOR_3DDKSHADOW, 60), shadow);
    drawFrame(dc, shrunk(client, 1), shadow, mixColours(COLOR_BTNFACE, COLOR_BTNSHADOW, 25));
}

// Sunken, and lit with a touch of the selection colour: the tool in use is seen at a glance.
static void drawCheckedFace(HDC dc, const RECT& client, const ButtonLook& look)
{
    const int light = look.disabled ? COLOR_BTNFACE : COLOR_HIGHLIGHT;
    const int percent = look.disabled ? 50 : look.mixed ? 8 : look.hot ? 24 : 16;
    const int edge = look.disabled ? COLOR_BTNSHADOW : COLOR_HIGHLIGHT;
    fillColour(dc, client, mixColours(COLOR_BTNHIGHLIGHT, light, percent));
    drawFrame(dc, client, mixColours(edge, COLOR_3DDKSHADOW, 30), GetSysColor(edge));
    drawFrame(dc, shrunk(client, 1), GetSysColor(COLOR_BTNSHADOW), mixColours(COLOR_BTNFACE, COLOR_BTNHIGHLIGHT, 90));
}

static void drawRaisedFace(HDC dc, const RECT& client, bool hot)
{
    const COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
    fillColour(dc, client, mixColours(COLOR_BTNFACE, COLOR_BTNHIGHLIGHT, hot ? 70 : 25));
    drawFrame(dc, client, hot ? shadow : mixColours(COLOR_BTNFACE, COLOR_BTNSHADOW, 70),
              hot ? mixColours(COLOR_BTNSHADOW, COLOR_3DDKSHADOW, 50) : shadow);
    drawFrame(dc, shrunk(client, 1), mixColours(COLOR_BTNFACE, COLOR_BTNHIGHLIGHT, 90),
              mixColours(COLOR_BTNFACE, COLOR_BTNSHADOW, 25));
}

static void drawFace(HDC dc, const RECT& client, const ButtonLook& look)
{
    if (highContrast()) return drawPlainFace(dc, client, look);
    if (look.disabled && !look.checked)
        drawDisabledFace(dc, client);
    else if (look.pressed)
        drawPressedFace(dc, client);
    else if (look.checked)
        drawCheckedFace(dc, client, look);
    else
        drawRaisedFace(dc, client, look.hot);
    if (look.isDefault && !look.disabled) {
        const COLORREF frame = GetSysColor(COLOR_3DDKSHADOW);
        drawFrame(dc, client, frame, frame);
    }
}

static void drawPush(HDC dc, const RECT& client, const ButtonLook& look)
{
    drawFace(dc, client, look);
    RECT room = shrunk(client, 3);
    if (look.pressed && !look.ownPicture) OffsetRect(&room, 1, 1);
    if (look.picture)
        drawPicture(dc, client, room, look.picture, look.disabled && !look.ownPicture);
    else
        drawCaption(dc, room, look, DT_CENTER);
    if (look.focusShown) drawFocus(dc, shrunk(client, 3));
}

// Check boxes and radio buttons with a caption

static void drawMarked(HDC dc, const RECT& client, const ButtonLook& look, UINT shape)
{
    fillColour(dc, client, GetSysColor(COLOR_BTNFACE));
    TEXTMETRICW metrics;
    GetTextMetricsW(dc, &metrics);
    LONG side = metrics.tmHeight < 13 ? 13 : metrics.tmHeight;
    if (side > client.bottom) side = client.bottom;
    const bool right = (look.style & BS_LEFTTEXT) != 0;

    RECT box = {right ? client.right - side : 0, 0, right ? client.right : side, 0};
    box.top = placeVertically(look.style, client, side);
    box.bottom = box.top + side;
    UINT state = shape;
    if (look.mixed) state = DFCS_BUTTON3STATE;
    if (look.checked || look.mixed) state |= DFCS_CHECKED;
    if (look.pressed) state |= DFCS_PUSHED;
    if (look.disabled) state |= DFCS_INACTIVE;
    DrawFrameControl(dc, &box, DFC_BUTTON, state);

    RECT room = client;
    const LONG gap = side / 3 + 1;
    if (right)
        room.right = box.left - gap;
    else
        room.left = box.right + gap;
    if (!*look.text) return;
    RECT place = drawCaption(dc, room, look, DT_LEFT);
    if (!look.focusShown) return;
    InflateRect(&place, 2, 1);
    IntersectRect(&place, &place, &client);
    drawFocus(dc, place);
}

static void drawCheck(HDC dc, const RECT& client, const ButtonLook& look)
{
    drawMarked(dc, client, look, DFCS_BUTTONCHECK);
}

static void drawRadio(HDC dc, const RECT& client, const ButtonLook& look)
{
    drawMarked(dc, client, look, DFCS_BUTTONRADIO);
}

// By button type (BS_PUSHBUTTON is 0). Null: the system draws it.
static const DrawKind kinds[BS_TYPEMASK + 1] = {
    drawPush,   // BS_PUSHBUTTON
    drawPush,   // BS_DEFPUSHBUTTON
    drawCheck,  // BS_CHECKBOX
    drawCheck,  // BS_AUTOCHECKBOX
    drawRadio,  // BS_RADIOBUTTON
    drawCheck,  // BS_3STATE
    drawCheck,  // BS_AUTO3STATE
    nullptr,    // BS_GROUPBOX
    drawPush,   // BS_USERBUTTON
    drawRadio,  // BS_AUTORADIOBUTTON
    drawPush,   // BS_PUSHBOX
    nullptr,    // BS_OWNERDRAW
    nullptr,   nullptr, nullptr, nullptr,
};

bool drawnBySystem(LONG style)
{
    return !kinds[style & BS_TYPEMASK];
}

static void choosePicture(ButtonLook& look, const Button& button)
{
    int state = PICTURE_NORMAL;
    if (look.pressed || look.checked) state = PICTURE_PRESSED;
    if (look.disabled) state = PICTURE_DISABLED;
    look.ownPicture = state != PICTURE_NORMAL && button.pictures[state];
    look.picture = button.pictures[look.ownPicture ? state : PICTURE_NORMAL];
}

static void readLook(HWND window, const Button& button, ButtonLook& look)
{
    const LRESULT state = SendMessageW(window, BM_GETSTATE, 0, 0);
    const LRESULT cues = SendMessageW(window, WM_QUERYUISTATE, 0, 0);
    look.style = GetWindowLongW(window, GWL_STYLE);
    look.pressed = (state & BST_PUSHED) != 0;
    look.mixed = (state & 3) == BST_INDETERMINATE;
    look.checked = (state & 3) != BST_UNCHECKED;
    look.disabled = !IsWindowEnabled(window);
    look.hot = button.hot;
    look.isDefault = (look.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    look.focusShown = GetFocus() == window && !(cues & UISF_HIDEFOCUS);
    look.prefixShown = !(cues & UISF_HIDEACCEL);
    GetWindowTextW(window, look.text, TEXT_LENGTH);
    shownText(look.text);
    if (!look.prefixShown) removeAccessKeys(look.text);  // DT_HIDEPREFIX is not known everywhere
    choosePicture(look, button);
}

void drawButton(HWND window, HDC dc, const RECT& client)
{
    const Button* button = buttonOf(window);
    if (!button) return;
    ButtonLook look = {};
    readLook(window, *button, look);
    DrawKind draw = look.picture || look.style & BS_PUSHLIKE ? drawPush : kinds[look.style & BS_TYPEMASK];
    if (!draw) return;

    const CaptionFont font = selectCaptionFont(dc, window, look.text);
    draw(dc, client, look);
    restoreFont(dc, font);
}
