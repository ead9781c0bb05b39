#include "controls/button_record.h"

#include "controls/superclass.h"

Button* buttonOf(HWND window)
{
    return (Button*)ownSlot(window);
}

Button* attachButton(HWND window, WNDPROC base)
{
    Button* button = (Button*)HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Button));
    if (!button) return nullptr;
    button->base = base;
    setOwnSlot(window, (LONG_PTR)button);
    if (buttonOf(window) == button) return button;
    HeapFree(GetProcessHeap(), 0, button);  // nobody would find it again
    return nullptr;
}

// A picture held by two states is deleted with the second.
static void dropPicture(Button* button, int state)
{
    HBITMAP old = button->pictures[state];
    button->pictures[state] = nullptr;
    for (HBITMAP other : button->pictures)
        if (other == old) return;
    DeleteObject(old);
}

void releaseButton(HWND window, Button* button)
{
    setOwnSlot(window, 0);
    for (int state = 0; state < PICTURE_COUNT; ++state)
        if (button->pictures[state]) dropPicture(button, state);
    HeapFree(GetProcessHeap(), 0, button);
}

void holdPicture(Button* button, ButtonPicture state, HBITMAP picture)
{
    if (button->pictures[state] == picture) return;
    if (button->pictures[state]) dropPicture(button, state);
    button->pictures[state] = picture;
}
