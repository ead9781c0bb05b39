// File names of photos: formats by extension and the name a retouched copy gets. No file is touched.
#pragma once

#include <string>

enum class PhotoFormat { Unknown, Jpeg, Png, Tiff, Bmp };  // the formats that can be written

// By the extension, letters in either case. Unknown for a format that can be read only, and for none.
PhotoFormat formatOfName(const std::wstring& path);

// "a/b.jpg" -> "a/b-retouched.jpg", from number 2 on "a/b-retouched-2.jpg". The extension becomes .png
// when the photo's own format cannot be written.
std::wstring retouchedName(const std::wstring& path, int number);

// The same, with as much of the name left out before "-retouched" as makes the rest fit into 255 bytes of UTF-8, which
// every system takes.
std::wstring shortRetouchedName(const std::wstring& path, int number);

// The folder part with its separator at the end; empty when the path is a bare name.
std::wstring folderOfPath(const std::wstring& path);

// The name without its folder.
std::wstring nameOfPath(const std::wstring& path);
