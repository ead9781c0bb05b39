#include "session/dialogs/button_pictures.h"

#include "controls/kovctrl32.h"
#include "session/dialogs/picture_table.h"

static void attachEntry(HWND dialog, const PictureEntry& entry, HINSTANCE instance)
{
    const HWND control = GetDlgItem(dialog, entry.controlId);
    if (!control) return;
    for (int state = 0; state < PICTURE_STATES; ++state) {
        const int id = entry.bitmapIds[state];
        const HBITMAP picture = id ? LoadBitmapA(instance, MAKEINTRESOURCEA(id)) : nullptr;
        if (!setButtonPicture(control, picture, state) && picture) DeleteObject(picture);
    }
}

int attachButtonPictures(HWND dialog, int tableId, HINSTANCE instance)
{
    const HRSRC resource = FindResourceA(instance, MAKEINTRESOURCEA(tableId), (LPCSTR)RT_RCDATA);
    const HGLOBAL block = resource ? LoadResource(instance, resource) : nullptr;
    const void* table = block ? LockResource(block) : nullptr;
    const size_t count = table ? pictureEntryCount(table, SizeofResource(instance, resource)) : 0;
    for (size_t i = 0; i < count; ++i)
        attachEntry(dialog, pictureEntry(table, i), instance);
    if (block) FreeResource(block);
    return 1;
}

void attachPicturesUnlessLibraryDoes(HWND dialog, int tableId, HINSTANCE instance)
{
    const int mode = displayMode();
    if (mode < 0 || mode > 1) attachButtonPictures(dialog, tableId, instance);
}
