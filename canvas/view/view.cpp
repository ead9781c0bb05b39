#include "canvas/view/view.h"

static const ViewScale scales[] = {
    {1, 4}, {1, 3}, {1, 2}, {2, 3}, {1, 1}, {3, 2}, {2, 1}, {3, 1}, {4, 1}, {6, 1}, {8, 1}, {12, 1}, {16, 1}, {32, 1},
};
static_assert(sizeof scales / sizeof scales[0] == ZOOM_STEP_COUNT, "one scale a step");
static_assert(ZOOM_STEP_100 == 5, "the fifth is 100 %");

ViewScale viewScale(int step)
{
    return scales[step - 1];
}

bool isZoomed(const CanvasView& view)
{
    return view.zoomStep > 0;
}

int viewPercent(const CanvasView& view)
{
    if (!isZoomed(view)) return 0;
    const ViewScale scale = viewScale(view.zoomStep);
    return (200 * scale.screen + scale.image) / (2 * scale.image);
}

// ---- fitted: as the system's mapping modes round

// Each build rounds the product of the two scales as the system it runs on does: what is in between matters
// where two image pixels are equally near.
#ifdef _WIN64
using ScaleProduct = float;
#else
using ScaleProduct = double;
#endif

struct FittedScale {
    float x, y;
};

static FittedScale fittedScale(const CanvasView& view)
{
    return {(float)((double)view.client.width / view.image.width),
            (float)((double)view.client.height / view.image.height)};
}

static bool isMapped(const CanvasView& view)
{
    return view.client.width > 0 && view.client.height > 0 && view.image.width > 0 && view.image.height > 0;
}

// Rounded down, without the library's floor: outlines have many points.
static int nearest(double value)
{
    const double moved = value + 0.5;
    const int towardZero = (int)moved;
    return towardZero - (towardZero > moved);
}

static PixelPoint fittedImagePoint(const CanvasView& view, PixelPoint client)
{
    const FittedScale scale = fittedScale(view);
    const ScaleProduct product = (ScaleProduct)scale.x * (ScaleProduct)scale.y;
    const float toImageX = (float)(scale.y / (double)product), toImageY = (float)(scale.x / (double)product);
    return {nearest(client.x * (double)toImageX), nearest(client.y * (double)toImageY)};
}

static PixelRect fittedDeviceRect(const CanvasView& view, const PixelRect& image)
{
    const FittedScale scale = fittedScale(view);
    return {nearest(image.left * (double)scale.x), nearest(image.top * (double)scale.y),
            nearest(image.right * (double)scale.x), nearest(image.bottom * (double)scale.y)};
}

// ---- zoomed

static int64_t floorDivide(int64_t value, int64_t by)
{
    return value >= 0 ? value / by : -((-value + by - 1) / by);
}

static int64_t ceilDivide(int64_t value, int64_t by)
{
    return -floorDivide(-value, by);
}

static ViewAxis axisOf(ViewScale scale, int64_t centre, int client)
{
    return {scale.screen, scale.image, floorDivide(centre - (int64_t)scale.image * client, 2)};
}

ViewAxes viewAxes(const CanvasView& view)
{
    const ViewScale scale = viewScale(view.zoomStep);
    return {axisOf(scale, view.centre.x, view.client.width), axisOf(scale, view.centre.y, view.client.height)};
}

static int pixelAt(const ViewAxis& axis, int screen)
{
    return (int)floorDivide((int64_t)screen * axis.image + axis.offset, axis.screen);
}

// The first screen position that shows the image pixel or one behind it.
static int firstShowing(const ViewAxis& axis, int pixel)
{
    return (int)ceilDivide((int64_t)pixel * axis.screen - axis.offset, axis.image);
}

// The screen position into which the image pixel's near border falls.
static int positionHolding(const ViewAxis& axis, int pixel)
{
    return (int)floorDivide((int64_t)pixel * axis.screen - axis.offset, axis.image);
}

PixelPoint imagePointAt(const CanvasView& view, PixelPoint client)
{
    if (!isMapped(view)) return client;
    if (!isZoomed(view)) return fittedImagePoint(view, client);
    const ViewAxes axes = viewAxes(view);
    return {pixelAt(axes.x, client.x), pixelAt(axes.y, client.y)};
}

PixelRect deviceRectAt(const CanvasView& view, const PixelRect& image)
{
    if (!isMapped(view)) return image;
    if (!isZoomed(view)) return fittedDeviceRect(view, image);
    const ViewAxes axes = viewAxes(view);
    return {firstShowing(axes.x, image.left), firstShowing(axes.y, image.top), firstShowing(axes.x, image.right),
            firstShowing(axes.y, image.bottom)};
}

void devicePointsAt(const CanvasView& view, PixelPoint* points, int count)
{
    if (!isMapped(view)) return;
    if (isZoomed(view)) {
        const ViewAxes axes = viewAxes(view);
        for (int i = 0; i < count; ++i)
            points[i] = {firstShowing(axes.x, points[i].x), firstShowing(axes.y, points[i].y)};
    } else {
        const FittedScale scale = fittedScale(view);
        for (int i = 0; i < count; ++i)
            points[i] = {nearest(points[i].x * (double)scale.x), nearest(points[i].y * (double)scale.y)};
    }
}

static PixelRect scaledOutward(const PixelRect& rect, ViewSize from, ViewSize to)
{
    return {(int)floorDivide((int64_t)rect.left * to.width, from.width),
            (int)floorDivide((int64_t)rect.top * to.height, from.height),
            (int)ceilDivide((int64_t)rect.right * to.width, from.width),
            (int)ceilDivide((int64_t)rect.bottom * to.height, from.height)};
}

PixelRect deviceCover(const CanvasView& view, const PixelRect& image)
{
    if (!isMapped(view)) return image;
    if (!isZoomed(view)) return scaledOutward(image, view.image, view.client);
    const ViewAxes axes = viewAxes(view);
    return {positionHolding(axes.x, image.left), positionHolding(axes.y, image.top), firstShowing(axes.x, image.right),
            firstShowing(axes.y, image.bottom)};
}

PixelRect imageCover(const CanvasView& view, const PixelRect& device)
{
    if (!isMapped(view)) return {0, 0, 0, 0};
    if (!isZoomed(view)) return scaledOutward(device, view.client, view.image);
    const ViewAxes axes = viewAxes(view);
    return {pixelAt(axes.x, device.left), pixelAt(axes.y, device.top), pixelAt(axes.x, device.right - 1) + 1,
            pixelAt(axes.y, device.bottom - 1) + 1};
}

// ---- changes

static bool isAboveFit(int step, ViewSize client, ViewSize image)
{
    const ViewScale scale = viewScale(step);
    return (int64_t)image.width * scale.screen > (int64_t)client.width * scale.image &&
           (int64_t)image.height * scale.screen > (int64_t)client.height * scale.image;
}

// The centre lies at least half a canvas from the image's borders.
static int64_t centreWithin(int64_t centre, ViewScale scale, int client, int image)
{
    const int64_t half = (int64_t)scale.image * client;
    const int64_t highest = 2 * (int64_t)image * scale.screen - half;
    return centre < half ? half : centre > highest ? highest : centre;
}

static CanvasView zoomedView(const CanvasView& view, int step, ViewCentre centre)
{
    const ViewScale scale = viewScale(step);
    return {view.client,
            view.image,
            step,
            {centreWithin(centre.x, scale, view.client.width, view.image.width),
             centreWithin(centre.y, scale, view.client.height, view.image.height)}};
}

CanvasView fittedView(const CanvasView& view)
{
    return {view.client, view.image, 0, {0, 0}};
}

CanvasView resizedView(const CanvasView& view, ViewSize client, ViewSize image)
{
    const CanvasView resized = {client, image, view.zoomStep, view.centre};
    if (!isZoomed(view) || !isAboveFit(view.zoomStep, client, image)) return fittedView(resized);
    return zoomedView(resized, view.zoomStep, view.centre);
}

// The step next to the view's, 0 for fitted; the present one when there is none.
static int nextStep(const CanvasView& view, int direction)
{
    if (!isMapped(view)) return view.zoomStep;
    for (int step = view.zoomStep + direction; step >= 1 && step <= ZOOM_STEP_COUNT; step += direction) {
        if (isAboveFit(step, view.client, view.image)) return step;
    }
    return direction < 0 ? 0 : view.zoomStep;
}

// How far into its image pixel a position is, counted in the new scale's parts.
static int64_t partOfPixel(const CanvasView& view, const ViewAxis& axis, int position, int pixel, int screen)
{
    if (!isZoomed(view)) return screen / 2;
    return ((int64_t)position * axis.image + axis.offset - (int64_t)pixel * axis.screen) * screen / axis.screen;
}

static int64_t centreKeeping(int pixel, int64_t part, int position, ViewScale scale, int client)
{
    const int64_t offset = (int64_t)pixel * scale.screen + part - (int64_t)position * scale.image;
    return 2 * offset + (int64_t)scale.image * client;
}

static int within(int value, int count)
{
    return value < 0 ? 0 : value >= count ? count - 1 : value;
}

static ViewCentre centreAround(const CanvasView& view, int step, PixelPoint client)
{
    const PixelPoint hit = imagePointAt(view, client);
    const PixelPoint pixel = {within(hit.x, view.image.width), within(hit.y, view.image.height)};
    const ViewScale scale = viewScale(step);
    const ViewAxes axes = isZoomed(view) ? viewAxes(view) : ViewAxes{};
    return {centreKeeping(pixel.x, partOfPixel(view, axes.x, client.x, pixel.x, scale.screen), client.x, scale,
                          view.client.width),
            centreKeeping(pixel.y, partOfPixel(view, axes.y, client.y, pixel.y, scale.screen), client.y, scale,
                          view.client.height)};
}

// Fitted, the middle of the image is at the centre.
static ViewCentre centreAtScale(const CanvasView& view, int step)
{
    const int64_t screen = viewScale(step).screen;
    if (!isZoomed(view)) return {view.image.width * screen, view.image.height * screen};
    const int64_t before = viewScale(view.zoomStep).screen;
    return {view.centre.x * screen / before, view.centre.y * screen / before};
}

CanvasView steppedView(const CanvasView& view, int direction, PixelPoint client)
{
    const int step = nextStep(view, direction);
    if (step == view.zoomStep) return view;
    return step ? zoomedView(view, step, centreAround(view, step, client)) : fittedView(view);
}

CanvasView steppedAboutCentre(const CanvasView& view, int direction)
{
    const int step = nextStep(view, direction);
    if (step == view.zoomStep) return view;
    return step ? zoomedView(view, step, centreAtScale(view, step)) : fittedView(view);
}

CanvasView fullSizeView(const CanvasView& view)
{
    if (!isMapped(view) || !isAboveFit(ZOOM_STEP_100, view.client, view.image)) return fittedView(view);
    return zoomedView(view, ZOOM_STEP_100, centreAtScale(view, ZOOM_STEP_100));
}

CanvasView pannedView(const CanvasView& view, int dx, int dy)
{
    if (!isZoomed(view)) return view;
    const int64_t unit = 2 * viewScale(view.zoomStep).image;
    return zoomedView(view, view.zoomStep, {view.centre.x + unit * dx, view.centre.y + unit * dy});
}
