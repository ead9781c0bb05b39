#include <gtest/gtest.h>

#include <string>

#include "control_dialog.h"

static const IMAGE_NT_HEADERS* headersOf(HMODULE module)
{
    const BYTE* base = (const BYTE*)module;
    return (const IMAGE_NT_HEADERS*)(base + ((const IMAGE_DOS_HEADER*)base)->e_lfanew);
}

TEST(Exports, FiveOrdinalsAndNoName)
{
    const HMODULE module = controlLibrary().module;
    ASSERT_TRUE(module);
    const BYTE* base = (const BYTE*)module;
    const IMAGE_DATA_DIRECTORY place = headersOf(module)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* exports = (const IMAGE_EXPORT_DIRECTORY*)(base + place.VirtualAddress);
    EXPECT_EQ(0u, exports->NumberOfNames);

    const DWORD* functions = (const DWORD*)(base + exports->AddressOfFunctions);
    std::vector<DWORD> ordinals;
    for (DWORD i = 0; i < exports->NumberOfFunctions; ++i)
        if (functions[i]) ordinals.push_back(exports->Base + i);
    EXPECT_EQ((std::vector<DWORD>{6, 56, 220, 221, 242, 300, 301, 302}), ordinals);
}

TEST(Exports, OnlySystemLibrariesAreImported)
{
    const HMODULE module = controlLibrary().module;
    const BYTE* base = (const BYTE*)module;
    const IMAGE_DATA_DIRECTORY place = headersOf(module)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* imported = (const IMAGE_IMPORT_DESCRIPTOR*)(base + place.VirtualAddress);
    int count = 0;
    for (; imported->Name; ++imported, ++count) {
        const std::string name = (const char*)base + imported->Name;
        static const char* const system[] = {"KERNEL32.dll", "USER32.dll", "GDI32.dll",   "COMCTL32.dll",
                                             "MSIMG32.dll",  "msvcrt.dll", "ADVAPI32.dll"};
        bool known = false;
        for (const char* one : system)
            known = known || _stricmp(one, name.c_str()) == 0;
        EXPECT_TRUE(known) << name;
    }
    EXPECT_GT(count, 2);
}

TEST(Exports, DisplayModeLetsDialogsAttachPictures)
{
    EXPECT_EQ(2, controlLibrary().displayMode());
}

TEST(Exports, BackgroundIsButtonFace)
{
    HWND dialog = openDialog({});
    ASSERT_TRUE(dialog);
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 20, 20);
    HGDIOBJ before = SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, 20, 20, BLACKNESS);
    EXPECT_EQ(1, controlLibrary().paintDialogBackground(dialog, dc, 0x42));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(dc, 0, 0));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(dc, 19, 19));
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    closeDialog(dialog);
}

// Without the library the classes are gone, and it can be loaded again.
TEST(Exports, UnloadingUnregistersTheClasses)
{
    WNDCLASSW description;
    const HINSTANCE self = GetModuleHandleW(nullptr);
    ASSERT_TRUE(controlLibrary().module);
    EXPECT_TRUE(GetClassInfoW(self, L"Bouton", &description));
    EXPECT_TRUE(GetClassInfoW(self, L"bouton", &description));
    EXPECT_TRUE(GetClassInfoW(self, L"statique", &description));
    EXPECT_TRUE(description.style & CS_GLOBALCLASS);

    ASSERT_TRUE(FreeLibrary(controlLibrary().module));
    const bool unloaded = !GetModuleHandleW(L"KOVCTRL32.dll");
    const bool button = GetClassInfoW(self, L"Bouton", &description);
    const bool separator = GetClassInfoW(self, L"statique", &description);
    ASSERT_EQ(controlLibrary().module, LoadLibraryW(L"KOVCTRL32.dll")) << "the functions taken before must stay valid";
    EXPECT_TRUE(unloaded);
    EXPECT_FALSE(button);
    EXPECT_FALSE(separator);
    EXPECT_TRUE(GetClassInfoW(self, L"Bouton", &description));
}

// Another module has classes of the same names: the library loads all the same, and leaves them to it.
TEST(Exports, NamesTakenByAnotherModuleDoNotStopTheLibrary)
{
    const HINSTANCE self = GetModuleHandleW(nullptr);
    const HMODULE module = controlLibrary().module;
    ASSERT_TRUE(FreeLibrary(module));
    WNDCLASSW taken = {};
    taken.style = CS_GLOBALCLASS;
    taken.lpfnWndProc = DefWindowProcW;
    taken.hInstance = self;
    for (const wchar_t* name : {L"Bouton", L"statique"}) {
        taken.lpszClassName = name;
        EXPECT_NE(0, RegisterClassW(&taken));
    }
    const HMODULE loaded = LoadLibraryW(L"KOVCTRL32.dll");
    EXPECT_NE(nullptr, loaded);
    if (loaded) FreeLibrary(loaded);
    for (const wchar_t* name : {L"Bouton", L"statique"})
        EXPECT_TRUE(UnregisterClassW(name, self)) << "still the other module's";
    ASSERT_EQ(module, LoadLibraryW(L"KOVCTRL32.dll")) << "the functions taken before must stay valid";
    WNDCLASSW description;
    EXPECT_TRUE(GetClassInfoW(self, L"Bouton", &description));
}

static int foreignMessages;
static WNDPROC systemButton;

static LRESULT CALLBACK foreignButton(HWND window, UINT message, WPARAM wp, LPARAM lp)
{
    ++foreignMessages;
    return CallWindowProcW(systemButton, window, message, wp, lp);
}

// A program may change the system's class for windows to come; ours stay on what they were registered on.
TEST(Exports, ControlsAreBuiltOnTheSystemsClassAsItWas)
{
    controlLibrary();
    const HWND button = CreateWindowW(L"Button", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    systemButton = (WNDPROC)SetClassLongPtrW(button, GCLP_WNDPROC, (LONG_PTR)foreignButton);
    ASSERT_NE(nullptr, systemButton);
    foreignMessages = 0;
    const HWND dialog = openDialog({{L"Bouton", L"BB:One", 7, 0, 2, 2, 40, 14}});
    ASSERT_TRUE(dialog);
    EXPECT_EQ(0, foreignMessages);
    closeDialog(dialog);
    SetClassLongPtrW(button, GCLP_WNDPROC, (LONG_PTR)systemButton);
    DestroyWindow(button);
}
