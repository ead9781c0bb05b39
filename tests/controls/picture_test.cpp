#include <gtest/gtest.h>

#include "control_dialog.h"

constexpr uint32_t RED = 0xE01020, GREEN = 0x10C020, BLUE = 0x2030D0;

static const std::vector<ControlSpec> pictureControls = {
    {L"Bouton", L"BB:Brush", 117, BS_AUTORADIOBUTTON | BS_PUSHLIKE, 4, 4, 24, 24},
    {L"Bouton", L"BB:Undo", 190, BS_PUSHBUTTON, 30, 4, 24, 24},
    {L"Bouton", L"BB:Box", 206, BS_AUTOCHECKBOX, 60, 4, 40, 12},
    {L"Static", L"BB:No", 400, 0, 4, 60, 40, 12},
};

struct Pictures : testing::Test {
    const ControlLibrary& library = controlLibrary();
    HWND dialog = openDialog(pictureControls);
    void SetUp() override { ASSERT_TRUE(dialog); }
    void TearDown() override { closeDialog(dialog); }
    HWND item(int id) const { return GetDlgItem(dialog, id); }
};

// The rectangle that a colour's pixels cover.
static RECT extentOf(const Picture& picture, uint32_t colour)
{
    RECT extent = {picture.width, picture.height, 0, 0};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (picture.at(x, y) == colour) {
                if (x < extent.left) extent.left = x;
                if (y < extent.top) extent.top = y;
                if (x >= extent.right) extent.right = x + 1;
                if (y >= extent.bottom) extent.bottom = y + 1;
            }
    return extent;
}

TEST_F(Pictures, ThatFitAreShownOneToOneInTheMiddle)
{
    RECT client;
    GetClientRect(item(117), &client);
    const int width = client.right - 8, height = client.bottom - 8;
    ASSERT_EQ(1, library.setButtonPicture(item(117), solidBitmap(width, height, RED, 1), 0));
    const Picture drawn = printed(item(117));
    EXPECT_EQ((width - 2) * (height - 2), drawn.count(RED));
    EXPECT_EQ(0, drawn.count(0xC0C0C0)) << "the transparent colour must show the face";
    const RECT extent = extentOf(drawn, RED);
    EXPECT_EQ(5, extent.left);
    EXPECT_EQ(5, extent.top);
}

TEST_F(Pictures, KeepTheirSizeUpToTheButtonsAndAreNotEnlargedALittle)
{
    RECT client;
    GetClientRect(item(117), &client);
    SetFocus(item(190));  // a focus rectangle would be drawn over the picture
    for (int part : {100, 90, 75, 65}) {
        const int width = client.right * part / 100, height = client.bottom * part / 100;
        library.setButtonPicture(item(117), solidBitmap(width, height, RED), 0);
        EXPECT_EQ(width * height, printed(item(117)).count(RED)) << part << " %";
    }
}

// A bitmap from a file, with an alpha channel of its own: half transparent on the left, opaque on the right.
static HBITMAP alphaBitmap(int side)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, side, -side, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    for (int i = 0; i < side * side; ++i)
        ((uint32_t*)bits)[i] = i % side < side / 2 ? 0x80400000 : 0xFFC0C0C0;
    return bitmap;
}

TEST_F(Pictures, WithAlphaAreBlendedWithTheFace)
{
    SetFocus(item(117));
    library.setButtonPicture(item(190), alphaBitmap(24), 0);
    const Picture drawn = printed(item(190));
    EXPECT_EQ(24 * 12, drawn.count(0xC0C0C0)) << "this grey is a colour here, and no hole";
    const uint32_t face = drawn.at(3, drawn.height / 2), mixed = drawn.at(drawn.width / 2 - 4, drawn.height / 2);
    EXPECT_NEAR(0x40 + (int)(face >> 16) * 127 / 255, (int)(mixed >> 16), 1);
    EXPECT_NEAR((int)(face & 255) * 127 / 255, (int)(mixed & 255), 1);
}

TEST_F(Pictures, AreScaledToFitKeepingTheirProportions)
{
    RECT client;
    GetClientRect(item(117), &client);
    for (int side : {8, 200}) {
        library.setButtonPicture(item(117), solidBitmap(2 * side, side, RED), 0);
        const RECT extent = extentOf(printed(item(117)), RED);
        EXPECT_EQ(client.right - 6, extent.right - extent.left) << side;
        EXPECT_EQ((client.right - 6) / 2, extent.bottom - extent.top) << side;
    }
}

TEST_F(Pictures, OfTheStateAreShown)
{
    library.setButtonPicture(item(117), solidBitmap(20, 20, RED), 0);
    library.setButtonPicture(item(117), solidBitmap(20, 20, GREEN), 1);
    library.setButtonPicture(item(117), solidBitmap(20, 20, BLUE), 2);
    EXPECT_GT(printed(item(117)).count(RED), 100);
    SendMessageW(item(117), BM_SETSTATE, TRUE, 0);
    EXPECT_GT(printed(item(117)).count(GREEN), 100);
    SendMessageW(item(117), BM_SETSTATE, FALSE, 0);
    CheckDlgButton(dialog, 117, BST_CHECKED);
    EXPECT_GT(printed(item(117)).count(GREEN), 100);
    EXPECT_EQ(0, printed(item(117)).count(RED));
    EnableWindow(item(117), FALSE);
    EXPECT_GT(printed(item(117)).count(BLUE), 100);
}

TEST_F(Pictures, MissingForAStateFallBackToTheNormalOne)
{
    library.setButtonPicture(item(190), solidBitmap(20, 20, RED), 0);
    const RECT normal = extentOf(printed(item(190)), RED);
    SendMessageW(item(190), BM_SETSTATE, TRUE, 0);
    const RECT pressed = extentOf(printed(item(190)), RED);
    EXPECT_EQ(normal.left + 1, pressed.left);
    EXPECT_EQ(normal.top + 1, pressed.top);
    SendMessageW(item(190), BM_SETSTATE, FALSE, 0);

    EnableWindow(item(190), FALSE);
    const Picture disabled = printed(item(190));
    EXPECT_EQ(0, disabled.count(RED));
    const uint32_t middle = disabled.at(disabled.width / 2, disabled.height / 2);
    EXPECT_NE(systemPixel(COLOR_BTNFACE), middle);
    EXPECT_LE(abs((int)(middle >> 16) - (int)(middle & 255)), 16) << "a shade of grey on the face";
}

TEST_F(Pictures, RemovedShowTheCaptionAgain)
{
    const Picture caption = printed(item(206));
    library.setButtonPicture(item(206), solidBitmap(20, 12, RED), 0);
    EXPECT_FALSE(printed(item(206)) == caption);
    EXPECT_EQ(1, library.setButtonPicture(item(206), nullptr, 0));
    EXPECT_TRUE(printed(item(206)) == caption);
}

TEST_F(Pictures, BelongToTheButton)
{
    HBITMAP first = solidBitmap(8, 8, RED), second = solidBitmap(8, 8, GREEN);
    BITMAP description;
    library.setButtonPicture(item(117), first, 0);
    library.setButtonPicture(item(117), first, 0);
    EXPECT_TRUE(GetObjectW(first, sizeof description, &description)) << "given again";
    library.setButtonPicture(item(117), first, 1);
    library.setButtonPicture(item(117), second, 0);
    EXPECT_TRUE(GetObjectW(first, sizeof description, &description)) << "still the picture of state 1";
    library.setButtonPicture(item(117), nullptr, 1);
    EXPECT_FALSE(GetObjectW(first, sizeof description, &description)) << "replaced";
    EXPECT_TRUE(GetObjectW(second, sizeof description, &description));
    closeDialog(dialog);
    EXPECT_FALSE(GetObjectW(second, sizeof description, &description)) << "the control is gone";
}

TEST_F(Pictures, AreRefusedByOtherWindowsAndForOtherStates)
{
    HBITMAP bitmap = solidBitmap(8, 8, RED);
    EXPECT_EQ(0, library.setButtonPicture(item(400), bitmap, 0));
    EXPECT_EQ(0, library.setButtonPicture(dialog, bitmap, 0));
    EXPECT_EQ(0, library.setButtonPicture(nullptr, bitmap, 0));
    EXPECT_EQ(0, library.setButtonPicture(item(117), bitmap, 3));
    EXPECT_EQ(0, library.setButtonPicture(item(117), bitmap, -1));
    EXPECT_TRUE(DeleteObject(bitmap)) << "still the caller's";
    EXPECT_EQ(0, library.setButtonPicture(item(117), bitmap, 0)) << "no bitmap any more";
}

TEST_F(Pictures, CheckedTogglesAreSunkenAndLight)
{
    library.setButtonPicture(item(117), solidBitmap(16, 16, RED, 4), 0);
    const Picture normal = printed(item(117));
    CheckDlgButton(dialog, 117, BST_CHECKED);
    const Picture checked = printed(item(117));
    const auto brightness = [](uint32_t p) { return (p >> 16 & 255) + (p >> 8 & 255) + (p & 255); };
    EXPECT_LT(brightness(checked.at(2, 1)), brightness(normal.at(2, 1))) << "shadow inside the edge";
    EXPECT_NE(checked.at(4, 4), normal.at(4, 4));
}
