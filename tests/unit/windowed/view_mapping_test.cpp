// Fitted, the view's own numbers are those of the system's mapping mode.
#include <gtest/gtest.h>
#include <windows.h>

#include "canvas/view/view.h"
#include "tests/unit/pure/guarded_image.h"

struct ViewMapping : testing::Test {
    HDC dc = CreateCompatibleDC(nullptr);
    CanvasView view = {};

    void TearDown() override { DeleteDC(dc); }

    void map(ViewSize client, ViewSize image)
    {
        view = resizedView({}, client, image);
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowExtEx(dc, image.width, image.height, nullptr);
        SetViewportExtEx(dc, client.width, client.height, nullptr);
    }

    void expectSame(PixelPoint client, PixelRect image)
    {
        POINT point = {client.x, client.y};
        DPtoLP(dc, &point, 1);
        const PixelPoint own = imagePointAt(view, client);
        ASSERT_EQ(point.x, own.x) << describe(client.x);
        ASSERT_EQ(point.y, own.y) << describe(client.y);
        RECT rect = {image.left, image.top, image.right, image.bottom};
        LPtoDP(dc, (POINT*)&rect, 2);
        const PixelRect device = deviceRectAt(view, image);
        ASSERT_EQ(rect.left, device.left) << describe(image.left);
        ASSERT_EQ(rect.top, device.top) << describe(image.top);
        ASSERT_EQ(rect.right, device.right) << describe(image.right);
        ASSERT_EQ(rect.bottom, device.bottom) << describe(image.bottom);
        PixelPoint corner = {image.left, image.top};
        devicePointsAt(view, &corner, 1);
        ASSERT_EQ(rect.left, corner.x) << describe(image.left);
        ASSERT_EQ(rect.top, corner.y) << describe(image.top);
    }

    std::string describe(int value) const
    {
        return std::to_string(value) + " at " + std::to_string(view.client.width) + "x" +
               std::to_string(view.client.height) + " for " + std::to_string(view.image.width) + "x" +
               std::to_string(view.image.height);
    }
};

TEST_F(ViewMapping, SmallSizesAtEveryPoint)
{
    for (int client = 1; client <= 48; ++client) {
        for (int image = 1; image <= 72; ++image) {
            map({client, 49 - client}, {image, 73 - image});
            for (int at = -12; at <= 90; ++at)
                expectSame({at, at}, {at, at, at + 5, at + 7});
            if (HasFatalFailure()) return;
        }
    }
}

TEST_F(ViewMapping, PhotosAtRandom)
{
    Dice dice = {21};
    for (int round = 0; round < 3000; ++round) {
        const ViewSize client = {dice.between(1, 1800), dice.between(1, 1200)};
        map(client, {dice.between(1, 12000), dice.between(1, 9000)});
        for (int i = 0; i < 60; ++i) {
            expectSame({dice.between(-400, 2200), dice.between(-400, 1600)},
                       {dice.between(-99, 12099), dice.between(-99, 9099), dice.upTo(12000), dice.upTo(9000)});
        }
        if (HasFatalFailure()) return;
    }
}
