#include <gtest/gtest.h>

#include "canvas/view/canvas_coordinates.h"
#include "tests/session/import_patch.h"

static RECT cover(RECT device, SIZE client, SIZE image)
{
    return coveringImageRect(device, client, image);
}

static void expectRect(const RECT& expected, const RECT& actual)
{
    EXPECT_EQ(expected.left, actual.left);
    EXPECT_EQ(expected.top, actual.top);
    EXPECT_EQ(expected.right, actual.right);
    EXPECT_EQ(expected.bottom, actual.bottom);
}

static BOOL WINAPI noPosition(POINT*)
{
    return FALSE;
}

static DWORD WINAPI placeOfMessage()
{
    return (DWORD)MAKELPARAM(-20, 70);
}

TEST(CanvasCoordinates, ThePointerIsWhereTheNewestMessageFoundItWhenTheSystemDoesNotTell)
{
    ImportPatch position, place;
    ASSERT_TRUE(patchImport(&position, GetModuleHandleA(nullptr), "GetCursorPos", (void*)noPosition));
    ASSERT_TRUE(patchImport(&place, GetModuleHandleA(nullptr), "GetMessagePos", (void*)placeOfMessage));
    const POINT at = pointerOnScreen(), inDesktop = pointerIn(GetDesktopWindow());
    undoPatch(&place);
    undoPatch(&position);
    EXPECT_EQ(-20, at.x);
    EXPECT_EQ(70, at.y);
    EXPECT_EQ(-20, inDesktop.x);
    EXPECT_EQ(70, inDesktop.y);
}

TEST(CanvasCoordinates, SameSizeIsOneToOne)
{
    expectRect({3, 4, 50, 60}, cover({3, 4, 50, 60}, {100, 80}, {100, 80}));
}

TEST(CanvasCoordinates, ReducedViewCoversWholePixels)
{
    expectRect({10, 10, 30, 24}, cover({3, 3, 9, 7}, {30, 30}, {100, 100}));
    expectRect({0, 0, 100, 100}, cover({0, 0, 30, 30}, {30, 30}, {100, 100}));
}

TEST(CanvasCoordinates, EnlargedViewRoundsOutwards)
{
    expectRect({1, 1, 3, 3}, cover({4, 5, 7, 9}, {30, 30}, {10, 10}));
}

// Each image rectangle's picture, LPtoDP's nearest device coordinates, must reach around the device one.
TEST(CanvasCoordinates, PictureOfTheCoverHoldsTheDeviceRectangle)
{
    for (int client = 1; client <= 40; ++client) {
        for (int image = 1; image <= 60; ++image) {
            for (int left = 0; left < client; ++left) {
                const RECT part = cover({left, 0, left + 1, client}, {client, client}, {image, image});
                EXPECT_LE((double)part.left * client / image, left);
                EXPECT_GE((double)part.right * client / image, left + 1);
            }
        }
    }
}

// No pixel of the image is so small that the screen's pixel which shows it would be left out.
TEST(CanvasCoordinates, DeviceRectangleHoldsThePictureOfEveryPixel)
{
    for (int client = 1; client <= 40; ++client) {
        for (int image = 1; image <= 260; image += 3) {
            for (int left = 0; left < image; ++left) {
                const RECT part =
                    coveringDeviceRect({left, left, left + 1, left + 1}, {image, image}, {client, client});
                ASSERT_LT(part.left, part.right);
                ASSERT_LE((double)part.left * image, (double)left * client);
                ASSERT_GE((double)part.bottom * image, (double)(left + 1) * client);
                ASSERT_LT((double)(part.left + 1) * image, (double)left * client + image + 1);
            }
        }
    }
}

TEST(CanvasCoordinates, EmptyClientCoversNothing)
{
    expectRect({0, 0, 0, 0}, cover({0, 0, 5, 5}, {0, 7}, {10, 10}));
}
