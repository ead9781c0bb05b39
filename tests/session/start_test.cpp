// Calls with good and bad arguments: what they return, what they leave behind, and that the next works.
#include "tests/session/import_patch.h"
#include "tests/session/library_driver.h"
#include "tests/session/session_fixture.h"

struct Starting : SessionTest {
    // The call must return 0 at once, change nothing and leave nothing behind.
    void expectRefused(const CallArguments& with)
    {
        const std::vector<uint8_t> before = snapshot(photo);
        ASSERT_TRUE(callAndReturn(&host, with));
        checkReturned(0);
        EXPECT_TRUE(before == snapshot(photo));
    }

    void expectGoodSession()
    {
        freeImage(&photo);
        photo = makePhoto(300, 200, 21);
        ASSERT_TRUE(open());
        StrokeReplay replay = beginReplay(host, photo);
        ASSERT_TRUE(chooseBrush(&host, &replay));
        ASSERT_TRUE(drawStroke(&host, {{50, 50}, {90, 70}}));
        expectPainted(&replay, host, photo);
        EXPECT_GT(changedPixels(replay), 300);
        closeAndCheck(replay.before);
    }

    void expectHeaderRefused(void (*spoil)(BITMAPINFOHEADER*))
    {
        BITMAPINFOHEADER header = headerOf(photo);
        const BITMAPINFOHEADER good = header;
        spoil(&header);
        setHeader(photo, header);
        expectRefused(arguments());
        setHeader(photo, good);
    }
};

TEST_F(Starting, NullImage)
{
    CallArguments with = arguments();
    with.image = nullptr;
    expectRefused(with);
    expectGoodSession();
}

TEST_F(Starting, EmptyImage)
{
    CallArguments with = arguments();
    with.image = GlobalAlloc(GMEM_MOVEABLE, 0);
    expectRefused(with);
    GlobalFree(with.image);
    expectGoodSession();
}

TEST_F(Starting, NullRectangle)
{
    CallArguments with = arguments();
    with.dialogRect = nullptr;
    expectRefused(with);
    expectGoodSession();
}

TEST_F(Starting, NullPoint)
{
    CallArguments with = arguments();
    with.palettePos = nullptr;
    expectRefused(with);
    expectGoodSession();
}

TEST_F(Starting, ParentThatIsNoWindow)
{
    CallArguments with = arguments();
    with.parent = (HWND)(ULONG_PTR)0x12344321;
    expectRefused(with);
    expectGoodSession();
}

TEST_F(Starting, NoParent)
{
    CallArguments with = arguments();
    with.parent = nullptr;
    const std::vector<uint8_t> before = snapshot(photo);
    ASSERT_TRUE(openSession(&host, with));
    closeAndCheck(before);
    expectGoodSession();
}

TEST_F(Starting, UnsoundHeaders)
{
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biWidth = 0; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biWidth = -300; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biHeight = 0; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biHeight = -200; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biHeight = MINLONG; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biWidth = MAXLONG, header->biHeight = MAXLONG; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biWidth = 0x15555556, header->biHeight = 4; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biSize = 0; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biSize = 0xFFFFFFF0; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biPlanes = 0; });
    expectHeaderRefused([](BITMAPINFOHEADER* header) { header->biCompression = BI_RLE8; });
    expectGoodSession();
}

TEST_F(Starting, BlockShorterThanItsHeaderPromises)
{
    for (SIZE_T size : {(SIZE_T)1, (SIZE_T)39, (SIZE_T)40, (SIZE_T)(photo.bitmapBytes - 1)}) {
        SCOPED_TRACE(size);
        const BITMAPINFOHEADER header = headerOf(photo);
        const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
        memcpy(GlobalLock(block), &header, size < sizeof header ? size : sizeof header);
        GlobalUnlock(block);
        CallArguments with = arguments();
        with.image = block;
        // A block may be rounded up by the system; only what is really short must be refused.
        if (GlobalSize(block) < photo.bitmapBytes) expectRefused(with);
        EXPECT_EQ(nullptr, GlobalFree(block));
    }
    expectGoodSession();
}

TEST_F(Starting, ClassNameAlreadyTaken)
{
    WNDCLASSA taken = {};
    taken.lpfnWndProc = DefWindowProcA;
    taken.hInstance = library.module;
    taken.lpszClassName = "KOVRETOUCH";
    ASSERT_NE(0, RegisterClassA(&taken));
    ASSERT_TRUE(callAndReturn(&host, arguments()));
    EXPECT_EQ(0, host.outcome.result);
    EXPECT_EQ(0, host.outcome.windowsLeft);
    EXPECT_FALSE(host.outcome.quitLeft);
    UnregisterClassA("KOVRETOUCH", library.module);
    expectGoodSession();
}

// A failed start after a session that ended with Save does not repeat its 1.
TEST_F(Starting, FailureAfterSaveIsNotASave)
{
    ASSERT_TRUE(open());
    saveAndCheck();
    CallArguments with = arguments();
    with.image = nullptr;
    expectRefused(with);
    expectGoodSession();
}

static HWND WINAPI noPalette(HINSTANCE instance, LPCWSTR name, HWND parent, DLGPROC procedure, LPARAM lp)
{
    if (!IS_INTRESOURCE(name)) return nullptr;
    return CreateDialogParamW(instance, name, parent, procedure, lp);
}

TEST_F(Starting, NoPaletteInAnyLanguage)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "CreateDialogParamW", (void*)noPalette));
    expectRefused(arguments());
    undoPatch(&patch);
    expectGoodSession();
}

// A template with a control that cannot be made: the palette is destroyed before it has read any settings.
TEST_F(Starting, PaletteThatCannotBeMadeLeavesTheSettingsAlone)
{
    const std::string path = library.directory + "KOVRTCH.INI";
    const std::string text = "[Cursors]\r\nT117=001,001,005,006,000,001,001,001,000,049,255\r\n";
    ASSERT_TRUE(writeFileBytes(path, FileBytes(text.begin(), text.end())));
    ASSERT_TRUE(UnregisterClassA("Bouton", GetModuleHandleA("KOVCTRL32.dll")));
    expectRefused(arguments());
    const FileBytes after = fileBytes(path);
    EXPECT_EQ(text, std::string(after.begin(), after.end()));
}

static HGLOBAL WINAPI noCopyOfAPhoto(UINT flags, SIZE_T size)
{
    return size > 100000 ? nullptr : GlobalAlloc(flags, size);
}

// The palette has read settings and is closed again: a session that does not start makes no file.
TEST_F(Starting, ARefusalMakesNoSettingsFile)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GlobalAlloc", (void*)noCopyOfAPhoto));
    expectRefused(arguments());
    undoPatch(&patch);
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesA((library.directory + "KOVRTCH.INI").c_str()));
    expectGoodSession();
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesA((library.directory + "KOVRTCH.INI").c_str()));
}

static HWND WINAPI noDialog(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM)
{
    return nullptr;
}

TEST_F(Starting, NoHostDialog)
{
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "CreateDialogParamW", (void*)noDialog));
    expectRefused(arguments());
    undoPatch(&patch);
    expectGoodSession();
}

static int allocationsUntilFailure, allocationsFailed;

static HGLOBAL WINAPI failingAlloc(UINT flags, SIZE_T size)
{
    if (--allocationsUntilFailure == 0) {
        ++allocationsFailed;
        return nullptr;
    }
    return GlobalAlloc(flags, size);
}

// Memory that runs short anywhere between the call and the first strokes: no crash, and Close still gives
// the original bytes.
TEST_F(Starting, EachAllocationMayFail)
{
    const std::vector<uint8_t> before = snapshot(photo);
    ImportPatch patch;
    ASSERT_TRUE(patchImport(&patch, library.module, "GlobalAlloc", (void*)failingAlloc));
    allocationsFailed = 1;
    for (int n = 1; allocationsFailed; ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 100);
        allocationsFailed = 0;
        allocationsUntilFailure = n;
        beginCall(&host, arguments());
        ASSERT_TRUE(waitUntil("a session or a refusal", [&] { return !host.running || sessionIsOpen(&host); }));
        if (host.running) {
            ASSERT_TRUE(settle(&host));
            ASSERT_TRUE(clickControl(&host, ID_BRUSH));
            ASSERT_TRUE(drawStroke(&host, {{50, 50}, {70, 60}}));
            ASSERT_TRUE(clickControl(&host, ID_CLOSE));
            ASSERT_TRUE(waitForReturn(&host));
        }
        checkReturned(0);
        EXPECT_TRUE(before == snapshot(photo));
    }
    undoPatch(&patch);
    expectGoodSession();
}

#if defined(__i386__)
// A host may call with a stack that is aligned to 4 bytes only.
TEST_F(Starting, MisalignedStack)
{
    for (unsigned offset : {4u, 8u, 12u}) {
        SCOPED_TRACE(offset);
        CallArguments with = arguments();
        with.stackOffset = offset;
        ASSERT_TRUE(openSession(&host, with));
        StrokeReplay replay = beginReplay(host, photo);
        ASSERT_TRUE(chooseBrush(&host, &replay));
        ASSERT_TRUE(chooseEdge(&host, &replay, true));
        ASSERT_TRUE(drawStroke(&host, {{50, 50}, {90, 70}}));
        expectPainted(&replay, host, photo);
        closeAndCheck(replay.before);
    }
}
#endif
