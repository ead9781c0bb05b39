#include <gtest/gtest.h>

#include <string>

#include "control_dialog.h"
#include "tests/session/import_patch.h"

static const std::vector<ControlSpec> buttonControls = {
    {L"Bouton", L"BB:&Close BMP:[\xA3]#1443|1444|#1445|#1446", 2, BS_PUSHBUTTON | WS_TABSTOP, 4, 4, 40, 14},
    {L"bouton", L"BB:L = H", 206, BS_AUTOCHECKBOX | WS_TABSTOP, 50, 4, 40, 12},
    {L"Bouton", L"BB:Cercle", 208, BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, 4, 30, 24, 24},
    {L"Bouton", L"BB:Rectangle", 209, BS_AUTORADIOBUTTON, 30, 30, 24, 24},
    {L"Bouton", L"BB:Third", 210, BS_AUTORADIOBUTTON | BS_PUSHLIKE, 56, 30, 24, 24},
    {L"statique", L"", 300, WS_GROUP, 4, 60, 100, 4},
    {L"statique", L"BB:Label", 301, 0, 4, 70, 60, 10},
};

struct Buttons : testing::Test {
    HWND dialog = (movePointer({5, 5}), openDialog(buttonControls));  // no button is hot yet
    void SetUp() override
    {
        ASSERT_TRUE(dialog);
        ASSERT_TRUE(activate(dialog));
    }
    void TearDown() override { closeDialog(dialog); }
    HWND item(int id) const { return GetDlgItem(dialog, id); }
    bool checked(int id) const { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }
};

TEST_F(Buttons, AreUnicodeWindowsWithTheirFullText)
{
    EXPECT_TRUE(IsWindowUnicode(item(2)));
    wchar_t text[100];
    GetWindowTextW(item(2), text, 100);
    EXPECT_STREQ(buttonControls[0].text, text);
    SetWindowTextW(item(2), L"BB:\x0417\x0430\x043A\x0440");
    GetWindowTextW(item(2), text, 100);
    EXPECT_STREQ(L"BB:\x0417\x0430\x043A\x0440", text);
}

TEST_F(Buttons, KeepTheSystemsDialogCodes)
{
    EXPECT_TRUE(SendMessageW(item(2), WM_GETDLGCODE, 0, 0) & DLGC_UNDEFPUSHBUTTON);
    EXPECT_TRUE(SendMessageW(item(208), WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON);
    EXPECT_TRUE(SendMessageW(item(206), WM_GETDLGCODE, 0, 0) & DLGC_BUTTON);
    EXPECT_TRUE(SendMessageW(item(301), WM_GETDLGCODE, 0, 0) & DLGC_STATIC);
}

TEST_F(Buttons, ClickNotifiesOnce)
{
    clickControl(dialog, 2);
    EXPECT_TRUE(waitFor(dialog, [] { return !dialogLog.clicks.empty(); }));
    EXPECT_EQ((std::vector<int>{2}), dialogLog.clicks);
}

TEST_F(Buttons, CheckBoxTogglesByClickAndBySpace)
{
    clickControl(dialog, 206);
    EXPECT_TRUE(waitFor(dialog, [&] { return checked(206); }));
    EXPECT_EQ(item(206), GetFocus());
    typeKey(VK_SPACE);
    EXPECT_TRUE(waitFor(dialog, [&] { return !checked(206); }));
    EXPECT_EQ((std::vector<int>{206, 206}), dialogLog.clicks);
}

TEST_F(Buttons, RadioGroupSwitchesByClick)
{
    clickControl(dialog, 208);
    ASSERT_TRUE(waitFor(dialog, [&] { return checked(208); }));
    clickControl(dialog, 210);
    ASSERT_TRUE(waitFor(dialog, [&] { return checked(210); }));
    EXPECT_FALSE(checked(208));
    EXPECT_FALSE(checked(209));
}

TEST_F(Buttons, RadioGroupSwitchesByArrowKeys)
{
    clickControl(dialog, 208);
    ASSERT_TRUE(waitFor(dialog, [&] { return checked(208); }));
    typeKey(VK_RIGHT);
    ASSERT_TRUE(waitFor(dialog, [&] { return checked(209); }));
    EXPECT_EQ(item(209), GetFocus());
    EXPECT_FALSE(checked(208));
    typeKey(VK_LEFT);
    EXPECT_TRUE(waitFor(dialog, [&] { return checked(208) && !checked(209); }));
}

// Windows' automatic radio button, which this test's system may not know: with the focus it clicks itself when it
// is unchecked, unless it was told not to.
static HWND toldNotToClick;

static LRESULT WINAPI clickingOnFocus(WNDPROC base, HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    if (message == BM_SETDONTCLICK) toldNotToClick = wp ? window : nullptr;
    const LRESULT result = CallWindowProcW(base, window, message, wp, lp);
    const bool radio = (GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
    const bool unchecked = SendMessageW(window, BM_GETCHECK, 0, 0) == BST_UNCHECKED;
    if (message == WM_SETFOCUS && radio && unchecked && toldNotToClick != window) SendMessageW(window, BM_CLICK, 0, 0);
    return result;
}

struct ButtonsOfWindows : Buttons {
    ImportPatch patch = {};
    void SetUp() override
    {
        Buttons::SetUp();
        toldNotToClick = nullptr;
        ASSERT_TRUE(patchImport(&patch, controlLibrary().module, "CallWindowProcW", (void*)clickingOnFocus));
    }
    void TearDown() override
    {
        undoPatch(&patch);
        Buttons::TearDown();
    }
};

// As after a dialog that was opened from a radio button: the button keeps the focus, unchecked, and gets it again
// whenever the window is activated.
TEST_F(ButtonsOfWindows, FocusAloneIsNoClick)
{
    CheckRadioButton(dialog, 208, 210, 208);
    for (int id : {209, 210, 2, 209}) {
        SetFocus(item(id));
        ASSERT_EQ(item(id), GetFocus());
    }
    SendMessageW(item(209), WM_KILLFOCUS, 0, 0);
    SendMessageW(item(209), WM_SETFOCUS, 0, 0);
    EXPECT_TRUE(dialogLog.clicks.empty());
    EXPECT_TRUE(checked(208));
    EXPECT_FALSE(checked(209));
}

TEST_F(ButtonsOfWindows, ClicksStillChoose)
{
    clickControl(dialog, 210);
    EXPECT_TRUE(waitFor(dialog, [&] { return checked(210); }));
    EXPECT_EQ((std::vector<int>{210}), dialogLog.clicks);
}

TEST_F(ButtonsOfWindows, FocusByAnArrowKeyChooses)
{
    CheckRadioButton(dialog, 208, 210, 208);
    BYTE keys[256];
    GetKeyboardState(keys);
    keys[VK_DOWN] = 0x80;
    SetKeyboardState(keys);
    SetFocus(item(209));
    keys[VK_DOWN] = 0;
    SetKeyboardState(keys);
    EXPECT_EQ((std::vector<int>{209}), dialogLog.clicks);
    EXPECT_TRUE(checked(209));
}

TEST_F(Buttons, PressedWhileTheButtonIsDown)
{
    const Picture before = printed(item(2));
    movePointer(middleOf(item(2)));
    pressLeft();
    EXPECT_TRUE(waitFor(dialog, [&] { return (SendMessageW(item(2), BM_GETSTATE, 0, 0) & BST_PUSHED) != 0; }));
    EXPECT_FALSE(printed(item(2)) == before);
    releaseLeft();
    EXPECT_TRUE(waitFor(dialog, [] { return !dialogLog.clicks.empty(); }));
    EXPECT_FALSE(SendMessageW(item(2), BM_GETSTATE, 0, 0) & BST_PUSHED);
}

TEST_F(Buttons, HotWhileThePointerIsOver)
{
    RECT rect;
    GetWindowRect(dialog, &rect);
    const Picture cool = printed(item(2));
    movePointer(middleOf(item(2)));
    EXPECT_TRUE(waitFor(dialog, [&] { return !(printed(item(2)) == cool); }));
    movePointer({rect.right + 50, rect.bottom + 50});
    EXPECT_TRUE(waitFor(dialog, [&] { return printed(item(2)) == cool; }));
}

// Each state must be told from the normal one at a glance, and be undone.
TEST_F(Buttons, StatesChangeTheLook)
{
    for (int id : {206, 208, 210}) {
        const Picture normal = printed(item(id));
        CheckDlgButton(dialog, id, BST_CHECKED);
        EXPECT_FALSE(printed(item(id)) == normal) << id;
        CheckDlgButton(dialog, id, BST_UNCHECKED);
        EXPECT_TRUE(printed(item(id)) == normal) << id;
        EnableWindow(item(id), FALSE);
        EXPECT_FALSE(printed(item(id)) == normal) << id;
        EnableWindow(item(id), TRUE);
        EXPECT_TRUE(printed(item(id)) == normal) << id;
    }
}

TEST_F(Buttons, DisabledCaptionIsGrey)
{
    const uint32_t text = systemPixel(COLOR_BTNTEXT), grey = systemPixel(COLOR_GRAYTEXT);
    ASSERT_NE(text, grey);
    EXPECT_GT(printed(item(206)).count(text), 10);
    EnableWindow(item(206), FALSE);
    EXPECT_GT(printed(item(206)).count(grey), 10);
}

TEST_F(Buttons, CaptionLeavesOutPrefixAndPictureReferences)
{
    const Picture whole = printed(item(2));
    SetWindowTextW(item(2), L"&Close");
    EXPECT_TRUE(printed(item(2)) == whole);
    SetWindowTextW(item(2), L"BB:&Close");
    EXPECT_TRUE(printed(item(2)) == whole);
    SetWindowTextW(item(2), L"&Close BMP:1");
    EXPECT_FALSE(printed(item(2)) == whole);
}

// Answers for the keyboard cues of a button; not every system keeps them.
static WPARAM cues;
static WNDPROC cueless;
static LRESULT CALLBACK answerCues(HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    if (message == WM_QUERYUISTATE) return (LRESULT)cues;
    return CallWindowProcW(cueless, window, message, wp, lp);
}

TEST_F(Buttons, FocusRectangleAndAccessKeysFollowTheKeyboardCues)
{
    SetFocus(item(2));
    ASSERT_EQ(item(2), GetFocus());
    cueless = (WNDPROC)SetWindowLongPtrW(item(2), GWLP_WNDPROC, (LONG_PTR)answerCues);
    cues = 0;
    const Picture all = printed(item(2));
    cues = UISF_HIDEFOCUS;
    const Picture withoutFocus = printed(item(2));
    cues = UISF_HIDEFOCUS | UISF_HIDEACCEL;
    const Picture plain = printed(item(2));
    EXPECT_FALSE(withoutFocus == all);
    EXPECT_FALSE(plain == withoutFocus);
    cues = 0;
    SetFocus(item(206));
    EXPECT_TRUE(printed(item(2)).count(systemPixel(COLOR_BTNTEXT)) == withoutFocus.count(systemPixel(COLOR_BTNTEXT)));
}

// The system's procedure draws into the window in these messages, past WM_PAINT. At no time may the
// window show anything but our picture of the state before or after.
TEST_F(Buttons, TheSystemsLookNeverShows)
{
    static const struct {
        const char* name;
        UINT message;
        WPARAM wp;
        LPARAM lp;
    } steps[] = {
        {"press", BM_SETSTATE, TRUE, 0},          {"release", BM_SETSTATE, FALSE, 0},
        {"check", BM_SETCHECK, BST_CHECKED, 0},   {"uncheck", BM_SETCHECK, BST_UNCHECKED, 0},
        {"text", WM_SETTEXT, 0, (LPARAM)L"BB:X"}, {"focus", WM_SETFOCUS, 0, 0},
        {"lose focus", WM_KILLFOCUS, 0, 0},       {"disable", WM_ENABLE, FALSE, 0},
        {"enable", WM_ENABLE, TRUE, 0},           {"default", BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE},
    };
    for (int id : {2, 206, 208, 210})
        for (const auto& step : steps) {
            if (step.message == BM_SETSTYLE && id != 2) continue;
            UpdateWindow(item(id));
            const Picture before = printed(item(id));
            ASSERT_TRUE(onScreen(item(id)) == before) << id << " before " << step.name;
            SendMessageW(item(id), step.message, step.wp, step.lp);
            const Picture shown = onScreen(item(id)), after = printed(item(id));
            EXPECT_TRUE(shown == before || shown == after) << id << " in " << step.name;
            UpdateWindow(item(id));
            EXPECT_TRUE(onScreen(item(id)) == after) << id << " after " << step.name;
        }
}

TEST_F(Buttons, CheckIsShownWithoutWaitingForPaint)
{
    ASSERT_TRUE(activate(dialog));
    SendMessageW(item(210), BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_FALSE(GetUpdateRect(item(210), nullptr, FALSE));
    EXPECT_TRUE(onScreen(item(210)) == printed(item(210)));
}

TEST_F(Buttons, SeparatorIsAnEtchedLineAndLabelAText)
{
    const Picture line = printed(item(300));
    const int middle = (line.height - 2) / 2;
    EXPECT_EQ(systemPixel(COLOR_BTNFACE), line.at(line.width / 2, 0));
    EXPECT_EQ(systemPixel(COLOR_3DSHADOW), line.at(line.width / 2, middle));
    EXPECT_EQ(systemPixel(COLOR_3DHIGHLIGHT), line.at(line.width / 2, middle + 1));
    EXPECT_EQ(systemPixel(COLOR_BTNFACE), line.at(line.width / 2, middle + 2));

    const Picture label = printed(item(301));
    EXPECT_GT(label.count(systemPixel(COLOR_BTNTEXT)), 10);
    SetWindowTextW(item(301), L"Label");
    EXPECT_TRUE(printed(item(301)) == label);
    SetWindowTextW(item(301), L"Other");
    EXPECT_FALSE(printed(item(301)) == label);
    UpdateWindow(item(301));
    EXPECT_TRUE(onScreen(item(301)) == printed(item(301)));
}

// Points on a label belong to the dialog below, which can be dragged by them.
TEST_F(Buttons, LabelsAndSeparatorsLetThePointerThrough)
{
    EXPECT_EQ(HTTRANSPARENT, SendMessageW(item(300), WM_NCHITTEST, 0, 0));
    EXPECT_EQ(HTTRANSPARENT, SendMessageW(item(301), WM_NCHITTEST, 0, 0));
}
