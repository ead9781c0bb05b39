#include "tests/session/library_fixture.h"

#include <algorithm>
#include <cstring>

#include "tests/session/screen_part.h"

const Corners pentagon = {{100, 100}, {200, 80}, {260, 200}, {150, 240}, {90, 160}};
const Corners triangle = {{40, 50}, {120, 60}, {70, 130}};

constexpr int ITEM_MARGIN = 6;  // between a list item's border and its picture

void LibrarySession::TearDown()
{
    SessionTest::TearDown();
    restPointer();
    removeLibraryDirectory(library);
    RemoveDirectoryA(library.directory.c_str());
}

bool LibrarySession::openOver(int width, int height, int clientWidth, int clientHeight)
{
    usePhoto(width, height, clientWidth, clientHeight);
    before = snapshot(photo);
    return open();
}

reference::Picture LibrarySession::imageOfBlock(const FileBytes& block)
{
    BITMAPINFOHEADER header;
    memcpy(&header, block.data(), sizeof header);
    return reference::fromStoredRows(block.data() + sizeof header, header.biWidth, header.biHeight);
}

void LibrarySession::expectImage(const reference::Picture& expected)
{
    const FileBytes now = snapshot(photo);
    const std::vector<uint8_t> rows = storedRows(expected, 0);
    FileBytes wanted = before;
    memcpy(wanted.data() + sizeof(BITMAPINFOHEADER), rows.data(), rows.size());
    const size_t wrong = (size_t)(std::mismatch(now.begin(), now.end(), wanted.begin()).first - now.begin());
    const size_t stride = (size_t)(photo.width * 3 + 3) & ~(size_t)3, at = wrong - sizeof(BITMAPINFOHEADER);
    EXPECT_TRUE(now == wanted) << "first other byte: column " << at % stride / 3 << ", row "
                               << photo.height - 1 - (int)(at / stride);
}

bool LibrarySession::draw(const Corners& corners)
{
    std::vector<POINT> points;
    for (ReferencePoint corner : corners)
        points.push_back({corner.x, corner.y});
    return drawSelection(&host, points);
}

bool LibrarySession::clickApply(RECT rect)
{
    RECT client;
    GetClientRect(host.canvas, &client);
    const int frameX = GetSystemMetrics(SM_CXFRAME), frameY = GetSystemMetrics(SM_CYFRAME);
    const double scaleX = (double)client.right / photo.width, scaleY = (double)client.bottom / photo.height;
    const double band = 2 * frameX / scaleX;  // the frame's band unit in image pixels
    const double x = rect.left - (2 * frameX + 1) + 4 * band + 4, y = rect.top - (2 * frameY + 1) + frameY / scaleY;
    return movePointerOnCanvas(&host, (int)(x * scaleX), (int)(y * scaleY)) && pressButton(&host) &&
           releaseButton(&host);
}

void LibrarySession::putFile(int number, const FileBytes& bytes)
{
    makeLibraryDirectory(library);
    ASSERT_TRUE(writeFileBytes(libraryDirectory(library) + storedName(number), bytes));
}

std::string LibrarySession::listText()
{
    const FileBytes bytes = fileBytes(listFile());
    return std::string(bytes.begin(), bytes.end());
}

DrawnSelection drawnSelection(const reference::Picture& image, const Corners& corners)
{
    const ReferenceOutline outline = referenceOutline(image.height, image.width, corners, corners.back());
    const ReferenceBounds bounds = outline.crossings.bounds();
    const RECT rect = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    DrawnSelection drawn = {ReferenceSelection(rect.right - rect.left, rect.bottom - rect.top), rect};
    drawn.selection.image = referenceSelectionImage(image, outline.crossings, bounds);
    drawn.selection.mask = referenceSelectionMask(outline.crossings, bounds);
    return drawn;
}

ReferenceSelection roundSelection(unsigned seed, int width, int height)
{
    ReferenceSelection selection = randomSelection(seed, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double dx = (2.0 * x + 1) / width - 1, dy = (2.0 * y + 1) / height - 1;
            const bool inside = dx * dx + dy * dy < 0.9;
            const uint8_t value = inside ? 0 : 255;
            selection.mask.at(x, y) = {value, value, value};
            if (!inside) selection.image.at(x, y) = {0, 0, 0};
        }
    return selection;
}

static LONG originOnAxis(LONG at, int size, int imageSize)
{
    at = std::max<LONG>(at, size / 2 + 1);
    at = std::min<LONG>(at, imageSize - size / 2 - 1);
    return at - size / 2;
}

RECT placedRect(POINT at, const ReferenceSelection& selection, const reference::Picture& image)
{
    const int width = selection.mask.width, height = selection.mask.height;
    const LONG left = originOnAxis(at.x, width, image.width), top = originOnAxis(at.y, height, image.height);
    return {left, top, left + width, top + height};
}

reference::Picture withSelectionApplied(const reference::Picture& image, const ReferenceSelection& selection, RECT rect)
{
    reference::Picture result = image;
    for (int y = 0; y < selection.mask.height; ++y)
        for (int x = 0; x < selection.mask.width; ++x) {
            const int atX = rect.left + x, atY = rect.top + y;
            const bool exists = atX >= 0 && atY >= 0 && atX < image.width && atY < image.height;
            if (exists && selection.mask.at(x, y).red == 0) result.at(atX, atY) = selection.image.at(x, y);
        }
    return result;
}

// Where a thumbnail stands inside an item of this size: as large as fits, its shape kept, in the middle.
static RECT pictureInItem(int width, int height)
{
    const int roomWidth = width - 2 * ITEM_MARGIN, roomHeight = height - 2 * ITEM_MARGIN;
    int w = roomWidth, h = roomWidth * 30 / 40;
    if (h > roomHeight) {
        h = roomHeight;
        w = h * 40 / 30;
    }
    const int left = ITEM_MARGIN + (roomWidth - w) / 2, top = ITEM_MARGIN + (roomHeight - h) / 2;
    return {left, top, left + w, top + h};
}

static RECT thumbnailRect(const Host& host, int index)
{
    const RECT item = storedRect(host, index);
    RECT picture = pictureInItem(item.right - item.left, item.bottom - item.top);
    OffsetRect(&picture, item.left, item.top);
    return picture;
}

reference::Picture shownThumbnail(const Host& host, int index)
{
    const reference::StoredPicture part = screenPart(thumbnailRect(host, index));
    return reference::fromStoredRows(part.bytes.data(), part.width, part.height);
}

reference::Picture expectedThumbnail(const Host& host, int index, const ReferenceSelection& selection)
{
    const std::vector<uint8_t> rgb = referenceThumbnail(selection);
    reference::Picture thumbnail(40, 30);
    for (size_t i = 0; i < thumbnail.pixels.size(); ++i)
        thumbnail.pixels[i] = {rgb[i * 3 + 2], rgb[i * 3 + 1], rgb[i * 3]};
    const RECT rect = thumbnailRect(host, index);
    return referenceScale(thumbnail, rect.right - rect.left, rect.bottom - rect.top);
}
