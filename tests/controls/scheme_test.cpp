// Buttons in other colour schemes, which the library is told by a system played here.
#include <gtest/gtest.h>

#include <set>

#include "control_dialog.h"
#include "tests/session/import_patch.h"

constexpr COLORREF BLACK = 0x000000, WHITE = 0xFFFFFF, YELLOW = 0x00FFFF;
static bool highContrast;

static BOOL WINAPI fakeParameters(UINT action, UINT size, void* data, UINT flags)
{
    if (action != SPI_GETHIGHCONTRAST) return SystemParametersInfoW(action, size, data, flags);
    ((HIGHCONTRASTW*)data)->dwFlags = highContrast ? HCF_HIGHCONTRASTON : 0;
    return TRUE;
}

static DWORD WINAPI blackScheme(int index)
{
    switch (index) {
    case COLOR_BTNFACE: return BLACK;
    case COLOR_HIGHLIGHT: return YELLOW;
    default: return WHITE;
    }
}

struct Schemes : testing::Test {
    HWND dialog = openDialog({{L"Bouton", L"BB:Brush", 117, BS_AUTORADIOBUTTON | BS_PUSHLIKE, 4, 4, 24, 24},
                              {L"Bouton", L"BB:Undo", 190, BS_PUSHBUTTON, 30, 4, 24, 24}});
    ImportPatch parameters = {}, colours = {};

    void SetUp() override
    {
        ASSERT_TRUE(dialog);
        SetFocus(item(190));
        HMODULE library = controlLibrary().module;
        ASSERT_TRUE(patchImport(&parameters, library, "SystemParametersInfoW", (void*)fakeParameters));
        ASSERT_TRUE(patchImport(&colours, library, "GetSysColor", (void*)blackScheme));
    }
    void TearDown() override
    {
        undoPatch(&colours);
        undoPatch(&parameters);
        closeDialog(dialog);
    }
    HWND item(int id) const { return GetDlgItem(dialog, id); }
    std::set<uint32_t> coloursOf(int id)
    {
        const Picture drawn = printed(item(id));
        return {drawn.pixels.begin(), drawn.pixels.end()};
    }
};

TEST_F(Schemes, HighContrastHasNoColoursBetween)
{
    highContrast = true;
    controlLibrary().setButtonPicture(item(117), solidBitmap(16, 16, 0xFFFFFF), 0);
    EXPECT_EQ((std::set<uint32_t>{0x000000, 0xFFFFFF}), coloursOf(117));
    CheckDlgButton(dialog, 117, BST_CHECKED);
    EXPECT_EQ((std::set<uint32_t>{0x000000, 0xFFFF00, 0xFFFFFF}), coloursOf(117)) << "checked: the highlight's frame";
    highContrast = false;
    EXPECT_GT(coloursOf(117).size(), 3u) << "any other scheme is shaded";
}

// A dark picture on a dark face is seen by its rim.
TEST_F(Schemes, DarkFacesGivePicturesALightRim)
{
    highContrast = true;
    controlLibrary().setButtonPicture(item(117), solidBitmap(28, 28, 0x102010, 1), 0);
    const Picture drawn = printed(item(117));
    EXPECT_EQ(26 * 26, drawn.count(0x102010));
    EXPECT_EQ(28 * 28 - 26 * 26, drawn.count(0xF0F0F0));
}
