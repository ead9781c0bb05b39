#include "tests/session/session_fixture.h"

#include "tests/session/screen_picture.h"

RECT dialogRectForClient(int left, int top, int clientWidth, int clientHeight)
{
    return {left, top, left + clientWidth + 2 * GetSystemMetrics(SM_CXFRAME),
            top + clientHeight + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION)};
}

void SessionTest::SetUp()
{
    takeOverPointer();
    ASSERT_TRUE(loadLibrary(&library));
    ASSERT_TRUE(startHost(&host, &library));
    usePhoto(300, 200);
}

void SessionTest::TearDown()
{
    if (HasFailure() && host.running) savePicture("at the end of a failed test");
    if (GetAsyncKeyState(VK_LBUTTON) & 0x8000) letGoOfButton();
    stopHost(&host);
    unloadLibrary(&library);
    freeImage(&photo);
}

void SessionTest::usePhoto(int width, int height, int clientWidth, int clientHeight)
{
    freeImage(&photo);
    photo = makePhoto(width, height, 7);
    dialogRect = dialogRectForClient(60, 50, clientWidth ? clientWidth : width, clientHeight ? clientHeight : height);
}

CallArguments SessionTest::arguments()
{
    return {photo.block, &dialogRect, &palettePos, host.parent, 0};
}

void SessionTest::checkReturned(int result)
{
    EXPECT_EQ(result, host.outcome.result);
    EXPECT_EQ(0, host.outcome.windowsLeft);
    EXPECT_FALSE(host.outcome.quitLeft);
    EXPECT_FALSE(host.outcome.classLeft);
    EXPECT_FALSE(host.outcome.parentDisabled);
}

void SessionTest::saveAndCheck()
{
    ASSERT_TRUE(clickControl(&host, ID_SAVE));
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(1);
}

void SessionTest::closeAndCheck(const std::vector<uint8_t>& before)
{
    ASSERT_TRUE(clickControl(&host, ID_CLOSE));
    ASSERT_TRUE(waitForReturn(&host));
    checkReturned(0);
    EXPECT_TRUE(before == snapshot(photo)) << "Close must give back the bytes of the call";
}

bool chooseBrush(Host* host, StrokeReplay* replay)
{
    replayNew(replay, *host);
    replay->brush.chosen = true;
    return clickControl(host, ID_BRUSH);
}

bool chooseEdge(Host* host, StrokeReplay* replay, bool soft)
{
    replayNew(replay, *host);
    replay->brush.soft = soft;
    return clickControl(host, soft ? ID_SOFT : ID_FULL);
}

bool chooseShape(Host* host, StrokeReplay* replay, int shape)
{
    replayNew(replay, *host);
    replay->brush.shape = shape;
    return clickControl(host, shape ? ID_RECTANGLE : ID_CIRCLE);
}

bool lowerOpacity(Host* host, StrokeReplay* replay, int pages)
{
    replayNew(replay, *host);
    bool ok = true;
    for (int i = 0; ok && i < pages; ++i)
        ok = clickScrollBar(host, ID_OPACITY, -2);
    const int position = scrollPosition(*host, ID_OPACITY);
    replay->brush.opacity = position * position / 100;
    return ok;
}
