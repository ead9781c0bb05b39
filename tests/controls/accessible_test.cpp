// What a screen reader hears of the controls: captions as they are read, and where a bar stands. Asked as such a
// program asks, on the dialog's thread and from another one.
#include <gtest/gtest.h>

#include <windows.h>

#include <oleacc.h>

#include <cstring>
#include <string>

#include "control_dialog.h"

static const std::vector<ControlSpec> accessibleControls = {
    {L"Bouton", L"BB:&Save && go BMP:[\xA3]#1215|#1216", 8, BS_PUSHBUTTON, 4, 4, 40, 14},
    {L"Bouton", L"BB:L = H", 206, BS_AUTOCHECKBOX, 50, 4, 40, 14},
    {L"statique", L"BB:Edge", 300, SS_LEFT, 100, 4, 40, 14},
    {L"SCROLLBAR", L"BB:O", 212, SBS_HORZ, 50, 24, 80, 10},
};

static HRESULT objectOf(HWND control, IAccessible** found)
{
    typedef HRESULT(WINAPI * ObjectFromWindow)(HWND, DWORD, REFIID, void**);
    const FARPROC address = GetProcAddress(LoadLibraryA("oleacc.dll"), "AccessibleObjectFromWindow");
    ObjectFromWindow ask;
    memcpy(&ask, &address, sizeof ask);
    return ask(control, (DWORD)OBJID_CLIENT, IID_IAccessible, (void**)found);
}

// The name or the value that is told; "-" when nothing is.
static std::wstring told(HWND control, HRESULT (STDMETHODCALLTYPE IAccessible::*what)(VARIANT, BSTR*))
{
    IAccessible* object = nullptr;
    if (FAILED(objectOf(control, &object)) || !object) return L"no object";
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    BSTR text = nullptr;
    const HRESULT result = (object->*what)(self, &text);
    const std::wstring copy = result == S_OK && text ? text : L"-";
    SysFreeString(text);
    object->Release();
    return copy;
}

struct Accessible : testing::Test {
    HWND dialog = openDialog(accessibleControls);
    void SetUp() override
    {
        ASSERT_TRUE(dialog);
        SetScrollRange(item(212), SB_CTL, 40, 100, FALSE);
        SetScrollPos(item(212), SB_CTL, 70, FALSE);
        controlLibrary().nameControl(item(212), L"Opacity");
    }
    void TearDown() override { closeDialog(dialog); }
    HWND item(int id) const { return GetDlgItem(dialog, id); }
    std::wstring name(int id) const { return told(item(id), &IAccessible::get_accName); }
    std::wstring value(int id) const { return told(item(id), &IAccessible::get_accValue); }
    void expectPlain() const
    {
        EXPECT_EQ(L"Save & go", name(8));
        EXPECT_EQ(L"L = H", name(206));
        EXPECT_EQ(L"Edge", name(300));
        EXPECT_EQ(L"Opacity", name(212));
        EXPECT_EQ(L"70", value(212));
    }
};

TEST_F(Accessible, NamesArePlainAndABarTellsItsPosition)
{
    expectPlain();
    SetScrollPos(item(212), SB_CTL, 71, FALSE);
    EXPECT_EQ(L"71", value(212));
    SetWindowTextW(item(8), L"BB:Back BMP:7");
    EXPECT_EQ(L"Back", name(8));
    wchar_t text[64];
    GetWindowTextW(item(8), text, 64);
    EXPECT_STREQ(L"BB:Back BMP:7", text) << "the text itself stays";
}

// Hears how often COM has been begun on the thread and not yet ended.
struct ComSpy final : IInitializeSpy {
    DWORD begun = 0;
    ULARGE_INTEGER cookie = {};

    ComSpy() { CoRegisterInitializeSpy(this, &cookie); }
    void stop() { CoRevokeInitializeSpy(cookie); }
    STDMETHODIMP QueryInterface(REFIID, void** given) override { return *given = this, S_OK; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP PreInitialize(DWORD, DWORD) override { return S_OK; }
    STDMETHODIMP PostInitialize(HRESULT result, DWORD, DWORD now) override { return begun = now, result; }
    STDMETHODIMP PreUninitialize(DWORD) override { return S_OK; }
    STDMETHODIMP PostUninitialize(DWORD now) override { return begun = now, S_OK; }
};

TEST_F(Accessible, ComIsBegunForTheControlsAndEndsWithThem)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ComSpy spy;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const DWORD before = spy.begun;
    ASSERT_GT(before, 0u);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(L"Opacity", name(212));
        EXPECT_EQ(L"Edge", name(300));
        EXPECT_EQ(before + 2, spy.begun) << "once a control that was asked";
    }
    DestroyWindow(item(212));
    EXPECT_EQ(before + 1, spy.begun);
    DestroyWindow(item(300));
    EXPECT_EQ(before, spy.begun);
    spy.stop();
    CoUninitialize();
    CoUninitialize();
}

// Somebody who still holds the object when the control is gone.
TEST_F(Accessible, AnObjectOutlivesItsControl)
{
    IAccessible* object = nullptr;
    ASSERT_EQ(S_OK, objectOf(item(8), &object));
    closeDialog(dialog);
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    BSTR text = nullptr;
    EXPECT_EQ(S_FALSE, object->get_accName(self, &text));
    EXPECT_EQ(nullptr, text);
    object->Release();
}

static DWORD WINAPI askFromOutside(void* test)
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    ((const Accessible*)test)->expectPlain();
    CoUninitialize();
    return 0;
}

TEST_F(Accessible, AnotherThreadHearsTheSame)
{
    const HANDLE thread = CreateThread(nullptr, 0, askFromOutside, this, 0, nullptr);
    EXPECT_TRUE(waitFor(dialog, [&] { return WaitForSingleObject(thread, 0) == WAIT_OBJECT_0; }));
    CloseHandle(thread);
}
