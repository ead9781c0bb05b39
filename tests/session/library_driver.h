// The selections library as the user has it: its window beside the palette, the stored selections in its
// list, dragging one of them with the real pointer. And its files as they lie on the disk.
#pragma once

#include <string>
#include <vector>

#include "tests/reference/tiff_reference.h"
#include "tests/session/pointer.h"

// Control ids of the library's window.

// ---- the window

HWND libraryWindow(const Host& host);  // null while it is not open
HWND libraryList(const Host& host);
bool toggleLibraryWindow(Host* host);  // clicks the palette's button, waits for the window to come or go
bool clickInLibrary(Host* host, int id);
// Drags the window's frame or title from a screen point.
bool dragLibraryFrame(Host* host, POINT from, int dx, int dy);
// Drags the window by its title to where it covers neither canvas nor palette.
bool moveLibraryAside(Host* host);
int storedCount(const Host& host);
int currentStored(const Host& host);  // index of the list's current item, -1 for none

// The question before a deletion; null while it is not asked.
HWND deleteQuestion(const Host& host);
std::wstring questionText(const Host& host);
bool askToDelete(Host* host);         // clicks Delete, waits for the question
bool answer(Host* host, int button);  // clicks IDYES or IDNO, waits for the question to go
void pressKey(WORD key);
HWND focusOf(const Host& host);

// ---- dragging

// The picture that follows the pointer; null while nothing is dragged.
HWND dragPicture(const Host& host);

bool clickStored(Host* host, int index);       // makes it current without dragging it anywhere
RECT storedRect(const Host& host, int index);  // on the screen; the list is scrolled to it when need be
// Presses on the middle of an item and waits for the picture.
bool grabStored(Host* host, int index);
// The whole way: grab, move there, let go.
bool dragStored(Host* host, int index, POINT screen);

// ---- drawing a selection

// Draws an outline through the client points with the Selection tool.
bool drawSelection(Host* host, const std::vector<POINT>& clientPoints);

// ---- files

typedef std::vector<uint8_t> FileBytes;

std::string libraryDirectory(const Library& library);  // with a backslash at the end
std::string storedName(int number);                    // "seld_001.tif"
FileBytes fileBytes(const std::string& path);          // empty when it cannot be read
bool writeFileBytes(const std::string& path, const FileBytes& bytes);
std::vector<std::string> filesOfLibrary(const Library& library);  // names, sorted; the list file too
void makeLibraryDirectory(const Library& library);
void removeLibraryDirectory(const Library& library);

// Pixels and mask of a file whose layout is known to be right.
ReferenceSelection selectionInFile(const FileBytes& bytes);
