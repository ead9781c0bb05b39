#include "tests/session/selection_fixture.h"

#include <cmath>

// Around the middle of the smallest canvas.
const std::vector<POINT> star = {{150, 120}, {260, 105}, {370, 130}, {330, 200},
                                 {365, 290}, {240, 260}, {160, 285}, {190, 200}};

void SelectionSession::openAt(const Size& size)
{
    usePhoto(size.photoWidth, size.photoHeight, size.clientWidth, size.clientHeight);
    ASSERT_TRUE(open());
    ASSERT_TRUE(clickControl(&host, ID_SELECTION));
    model = beginModel(host, photo);
    ASSERT_EQ(size.clientWidth, model.scale.client.cx);
}

void SelectionSession::draw(const std::vector<POINT>& clientPoints)
{
    const size_t first = seenCount();
    ASSERT_TRUE(drawStroke(&host, clientPoints));
    floatDrawnOutline(&model, host, first);
    ASSERT_FALSE(IsRectEmpty(&model.shown.rect));
}

POINT SelectionSession::clientOfHit(int hit)
{
    const FrameMeasures frame = frameOf(model);
    const POINT pixel = pixelOfHit(frame, hit);
    const RECT there = toClient(model.scale, RECT{pixel.x, pixel.y, pixel.x + 1, pixel.y + 1});
    const POINT client = {(there.left + there.right) / 2, (there.top + there.bottom) / 2};
    const RECT button = buttonRect(frame, hit);
    const POINT back = toImage(model.scale, client);
    EXPECT_TRUE(IsRectEmpty(&button) || PtInRect(&button, back)) << "hit code " << hit;
    return client;
}

void SelectionSession::press(int hit)
{
    const POINT at = clientOfHit(hit);
    ASSERT_TRUE(drawStroke(&host, {at}));
}

void SelectionSession::apply()
{
    press(APPLY);
    applyModel(&model);
}

void SelectionSession::expectPhoto(const char* when)
{
    EXPECT_TRUE(expectedBlock(model) == snapshot(photo)) << when;
}

// The pointer counts by the image pixel it is on: the band moves from pixel to pixel.
POINT SelectionSession::pixelCorner(POINT client)
{
    const POINT pixel = toImage(model.scale, client);
    const RECT there = toClient(model.scale, RECT{pixel.x, pixel.y, pixel.x, pixel.y});
    return {there.left, there.top};
}

// Drags from a part of the frame by so many client pixels; returns the rubber band's last rectangle,
// image pixels.
RECT SelectionSession::dragBand(int hit, int dx, int dy)
{
    const POINT from = clientOfHit(hit), to = {from.x + dx, from.y + dy};
    RECT band = toClient(model.scale, model.shown.rect);
    EXPECT_TRUE(drawStroke(&host, {from, {from.x + dx / 2, from.y + dy / 2}, to}));
    dx = (int)(pixelCorner(to).x - pixelCorner(from).x);
    dy = (int)(pixelCorner(to).y - pixelCorner(from).y);
    const bool left = hit == LEFT_EDGE || hit == TOP_LEFT || hit == BOTTOM_LEFT;
    const bool right = hit == RIGHT_EDGE || hit == TOP_RIGHT || hit == BOTTOM_RIGHT;
    const bool top = hit == TOP_EDGE || hit == TOP_LEFT || hit == TOP_RIGHT;
    const bool bottom = hit == BOTTOM_EDGE || hit == BOTTOM_LEFT || hit == BOTTOM_RIGHT;
    if (left || hit == INSIDE) band.left += dx;
    if (right || hit == INSIDE) band.right += dx;
    if (top || hit == INSIDE) band.top += dy;
    if (bottom || hit == INSIDE) band.bottom += dy;
    return toImage(model.scale, band);
}

void SelectionSession::dragInside(int dx, int dy)
{
    const RECT to = dragBand(INSIDE, dx, dy);
    moveModel(&model, to.left - model.shown.rect.left, to.top - model.shown.rect.top);
}

void SelectionSession::dragSide(int hit, int dx, int dy)
{
    resizeModel(&model, dragBand(hit, dx, dy));
}

double SelectionSession::angleOf(POINT client)
{
    const POINT centre = turnCentre(model), at = pixelCorner(client);
    return atan2((double)(centre.y - at.y), (double)(at.x - centre.x)) * 180 / acos(-1.0);
}

// A client pixel that lies the wanted whole degrees, and some more, beyond the grip.
POINT SelectionSession::turnTarget(POINT grip, int wanted)
{
    const POINT centre = turnCentre(model);
    for (int radius = 100; radius < 190; ++radius) {
        const double angle = (angleOf(grip) + wanted + (wanted < 0 ? -0.5 : 0.5)) * acos(-1.0) / 180;
        const POINT at = {centre.x + lround(radius * cos(angle)), centre.y - lround(radius * sin(angle))};
        double turned = angleOf(at) - angleOf(grip);
        if (turned > 180) turned -= 360;
        if (turned < -180) turned += 360;
        if (fabs(turned - wanted - (wanted < 0 ? -0.5 : 0.5)) < 0.3) return at;
    }
    ADD_FAILURE() << "no pixel for " << wanted << " degrees";
    return grip;
}

// Drags the rotation button around the middle of the drawn outline.
void SelectionSession::dragTurn(int wanted)
{
    const POINT grip = clientOfHit(ROTATE);
    ASSERT_TRUE(drawStroke(&host, {grip, turnTarget(grip, wanted / 2), turnTarget(grip, wanted)}));
}

void SelectionSession::closeSession()
{
    closeAndCheck(model.before);
}
