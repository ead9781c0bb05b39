// The contrast dialog opened by the real pointer, and what its preview and the image must be by the plain reference of
// the colour rules.
#pragma once

#include "tests/reference/colour_reference.h"
#include "tests/session/session_fixture.h"

typedef std::vector<uint8_t> Block;

reference::StoredPicture imageOf(const Block& block, int width, int height);

// The block with every row adjusted; header and guard as they are.
Block adjustedBlock(const Block& block, const HostImage& photo, const reference::Values& values);

struct Contrast : SessionTest {
    HWND dialog = nullptr;
    Block before;  // the host's image when the session opened

    void SetUp() override;
    bool findDialog();
    // Host window and palette side by side: a click on one would otherwise bring it over the other.
    void openSessionHere();
    void openDialog();
    // A host need not keep the bytes at the rows' ends at 0.
    void spoilPadding();
    // Otherwise the palette button's tooltip would come up over the preview.
    void leavePalette() { ASSERT_TRUE(movePointer(&host, middleOf(ID_CONTRAST_BAR))); }

    RECT controlRect(int id) const;
    POINT middleOf(int id) const;
    void click(int id);
    void clickToClose(int id);
    int position(int bar) const { return GetScrollPos(GetDlgItem(dialog, bar), SB_CTL); }

    void scroll(int bar, int code, int value = 0);
    void drag(int bar, int value) { scroll(bar, SB_THUMBTRACK, value); }

    void set(const reference::Values& values);
    RECT previewOnScreen(const reference::StoredPicture& preview) const;
    reference::StoredPicture preview() const;
    void expectShown(const reference::StoredPicture& expected);
    void expectPreview(const reference::Values& values) { expectShown(reference::adjustImage(preview(), values)); }

    void expectGeometry();
    void expectAfterOk(const reference::Values& values);
};
