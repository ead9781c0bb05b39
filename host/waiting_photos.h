// The photos that are to be retouched one after the other: named on the command line, chosen, or dropped.
#pragma once

#include <string>
#include <windows.h>

#include <shellapi.h>

void addWaiting(const std::wstring& photo);
void addDropped(HDROP dropped);  // and frees what was dropped

bool anyWaiting();
bool takeWaiting(std::wstring* photo);

// Each in quotation marks behind a blank, as a command line takes them.
std::wstring lineOfWaiting();

// Their names without folders, "b.jpg, c.jpg".
std::wstring namesOfWaiting();
