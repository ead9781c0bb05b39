#include <gtest/gtest.h>

#include "control_dialog.h"

static const std::vector<ControlSpec> countedControls = {
    {L"Bouton", L"BB:Brush", 117, BS_AUTORADIOBUTTON | BS_PUSHLIKE, 4, 4, 24, 24},
    {L"Bouton", L"BB:Close BMP:1", 2, BS_PUSHBUTTON, 30, 4, 24, 24},
    {L"Bouton", L"BB:Box", 206, BS_AUTOCHECKBOX, 60, 4, 40, 12},
    {L"statique", L"", 300, 0, 4, 60, 100, 4},
};

// How many more bitmaps the process can make. (Not every system counts a process's GDI objects.)
static int bitmapsLeft()
{
    static constexpr int ENOUGH = 1 << 17;
    std::vector<HBITMAP> made;
    while (made.size() < ENOUGH) {
        HBITMAP bitmap = CreateBitmap(1, 1, 1, 1, nullptr);
        if (!bitmap) break;
        made.push_back(bitmap);
    }
    for (HBITMAP bitmap : made)
        DeleteObject(bitmap);
    return (int)made.size();
}

static size_t heapInUse()
{
    size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    HeapUnlock(GetProcessHeap());
    return bytes;
}

static void useDialog()
{
    HWND dialog = openDialog(countedControls, false);
    ASSERT_TRUE(dialog);
    for (int id : {117, 2, 206}) {
        HWND button = GetDlgItem(dialog, id);
        for (int state : {0, 1, 2, 0})
            controlLibrary().setButtonPicture(button, solidBitmap(4, 4, 0xFF0000), state);
        printed(button);
        SendMessageW(button, WM_MOUSEMOVE, 0, MAKELPARAM(2, 2));
        EnableWindow(button, FALSE);
        printed(button);
    }
    printed(GetDlgItem(dialog, 300));
    closeDialog(dialog);
}

TEST(Leaks, ThousandDialogsLeaveNothingBehind)
{
    for (int i = 0; i < 20; ++i)
        useDialog();  // what is made once is made
    const int bitmapsBefore = bitmapsLeft();
    const size_t heapBefore = heapInUse();
    ASSERT_LT(bitmapsBefore, 1 << 17) << "the count must end somewhere to say anything";
    for (int i = 0; i < 1000; ++i)
        useDialog();
    // A single byte lost in every third dialog would be 333.
    EXPECT_GE(bitmapsLeft(), bitmapsBefore - 100);
    EXPECT_LE(heapInUse(), heapBefore + 100);
}
