// The list of stored selections in the library's window: its items, how they are drawn, and dragging
// one onto the image.
#pragma once

#include <windows.h>

// Puts every readable stored selection into the list box.
void fillLibraryList(HWND list);

// Adds the stored selection of a path; nothing when its thumbnail cannot be read.
void addLibraryItem(HWND list, const WCHAR* path);

// Path of the current item, null when there is none. Valid until the item goes.
const WCHAR* currentLibraryPath(HWND list);

// Removes the row of a path, if there is one.
void removeLibraryItem(HWND list, const WCHAR* path);

void drawLibraryItem(const DRAWITEMSTRUCT& draw);  // WM_DRAWITEM
void freeLibraryItem(ULONG_PTR itemData);          // WM_DELETEITEM

// Items keep the 4 : 3 shape of a thumbnail.
void setLibraryItemHeight(HWND list);

// From here on a press on an item starts a drag of its thumbnail.
void subclassLibraryList(HWND list);
void unsubclassLibraryList(HWND list);
