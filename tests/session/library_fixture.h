// What every test of the selections library starts with: a session whose library directory goes at the end,
// and what a stored selection must look like on the screen, in a file and in the image.
#pragma once

#include "tests/reference/outline_reference.h"
#include "tests/session/library_driver.h"
#include "tests/session/session_fixture.h"

// A closed outline in image pixels, no corner twice.
typedef std::vector<ReferencePoint> Corners;

extern const Corners pentagon, triangle;

struct LibrarySession : SessionTest {
    FileBytes before;  // the host's image when the session opened

    void TearDown() override;

    // A session over a photo, shown at clientWidth x clientHeight (0: the photo's own size).
    bool openOver(int width, int height, int clientWidth = 0, int clientHeight = 0);

    reference::Picture image() { return imageOfBlock(snapshot(photo)); }
    // The image holds these pixels; header, padding and what lies behind it are as they were.
    void expectImage(const reference::Picture& expected);
    void expectUntouched() { EXPECT_TRUE(before == snapshot(photo)) << "the image has changed"; }

    // Draws the outline and checks where it lies. The canvas must show the image pixel by pixel.
    bool draw(const Corners& corners);

    // Clicks Apply on the frame of the selection that floats at `rect` (image pixels).
    bool clickApply(RECT rect);

    static reference::Picture imageOfBlock(const FileBytes& block);
    void putFile(int number, const FileBytes& bytes);
    std::string listFile() { return libraryDirectory(library) + "seldib.lst"; }
    std::string listText();
    FileBytes stored(int number) { return fileBytes(libraryDirectory(library) + storedName(number)); }
};

// What an outline drawn with the pointer encloses: pixels, mask, and its rectangle in the image.
struct DrawnSelection {
    ReferenceSelection selection;
    RECT rect;
};
DrawnSelection drawnSelection(const reference::Picture& image, const Corners& corners);

// A selection with something inside and outside: an ellipse of noise.
ReferenceSelection roundSelection(unsigned seed, int width, int height);

// Its rectangle when it is dropped on an image point.
RECT placedRect(POINT at, const ReferenceSelection& selection, const reference::Picture& image);
reference::Picture withSelectionApplied(const reference::Picture& image, const ReferenceSelection& selection,
                                        RECT rect);

// The thumbnail of a list item as the screen shows it, and as it should be shown.
reference::Picture shownThumbnail(const Host& host, int index);
reference::Picture expectedThumbnail(const Host& host, int index, const ReferenceSelection& selection);
