#include "session/dialogs/button_pictures.h"

#include <initializer_list>

#include "controls/kovctrl32.h"
#include "resources/resource_ids.h"
#include "session/dialogs/picture_table.h"

constexpr int FRAME = 1;  // of a button, on each side

static bool fitsOn(HWND control, HBITMAP picture)
{
    RECT client;
    BITMAP size;
    return GetClientRect(control, &client) && GetObjectA(picture, sizeof size, &size) &&
           size.bmWidth <= client.right - 2 * FRAME && size.bmHeight <= client.bottom - 2 * FRAME;
}

static HBITMAP loadPicture(HINSTANCE instance, int id)
{
    return (HBITMAP)LoadImageA(instance, MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
}

// The largest of the picture's sizes that the control has room for; its own size where there is room for none.
static HBITMAP pictureFor(HWND control, HINSTANCE instance, int id)
{
    for (int larger : {PICTURE_DOUBLE, PICTURE_LARGE}) {
        const HBITMAP picture = loadPicture(instance, id + larger);
        if (picture && fitsOn(control, picture)) return picture;
        if (picture) DeleteObject(picture);
    }
    return loadPicture(instance, id);
}

static void attachEntry(HWND dialog, const PictureEntry& entry, HINSTANCE instance)
{
    const HWND control = GetDlgItem(dialog, entry.controlId);
    if (!control) return;
    for (int state = 0; state < PICTURE_STATES; ++state) {
        const int id = entry.bitmapIds[state];
        const HBITMAP picture = id ? pictureFor(control, instance, id) : nullptr;
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
