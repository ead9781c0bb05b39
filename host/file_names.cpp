#include "host/file_names.h"

constexpr size_t LONGEST_NAME = 255;

struct FormatName {
    const wchar_t* extension;
    PhotoFormat format;
};
static const FormatName formatNames[] = {
    {L".jpg", PhotoFormat::Jpeg}, {L".jpeg", PhotoFormat::Jpeg}, {L".jpe", PhotoFormat::Jpeg},
    {L".png", PhotoFormat::Png},  {L".tif", PhotoFormat::Tiff},  {L".tiff", PhotoFormat::Tiff},
    {L".bmp", PhotoFormat::Bmp},  {L".dib", PhotoFormat::Bmp},
};

static size_t nameStart(const std::wstring& path)
{
    const size_t separator = path.find_last_of(L"\\/:");
    return separator == std::wstring::npos ? 0 : separator + 1;
}

// Where the extension starts, its dot included; the end when there is none. A leading dot starts none.
static size_t extensionStart(const std::wstring& path)
{
    const size_t dot = path.rfind(L'.');
    return dot == std::wstring::npos || dot <= nameStart(path) ? path.size() : dot;
}

static bool sameLetters(const std::wstring& text, const wchar_t* lowerCase)
{
    size_t i = 0;
    for (; i < text.size() && lowerCase[i]; ++i) {
        const wchar_t letter = text[i] >= L'A' && text[i] <= L'Z' ? (wchar_t)(text[i] + 32) : text[i];
        if (letter != lowerCase[i]) return false;
    }
    return i == text.size() && !lowerCase[i];
}

static bool isSecondHalf(wchar_t letter)  // of a pair that is one letter
{
    return letter >= 0xDC00 && letter <= 0xDFFF;
}

static size_t bytesIn(const std::wstring& text)
{
    size_t bytes = 0;
    for (wchar_t letter : text)  // both halves of a pair: 4
        bytes += letter < 0x80 ? 1 : letter < 0x800 || (letter >= 0xD800 && letter <= 0xDFFF) ? 2 : 3;
    return bytes;
}

PhotoFormat formatOfName(const std::wstring& path)
{
    const std::wstring extension = path.substr(extensionStart(path));
    for (const FormatName& entry : formatNames)
        if (sameLetters(extension, entry.extension)) return entry.format;
    return PhotoFormat::Unknown;
}

std::wstring retouchedName(const std::wstring& path, int number)
{
    const size_t end = extensionStart(path);
    const std::wstring extension = formatOfName(path) == PhotoFormat::Unknown ? L".png" : path.substr(end);
    std::wstring name = path.substr(0, end) + L"-retouched";
    if (number > 1) name += L"-" + std::to_wstring(number);
    return name + extension;
}

std::wstring shortRetouchedName(const std::wstring& path, int number)
{
    std::wstring stem = path.substr(0, extensionStart(path));
    const std::wstring extension = path.substr(stem.size());
    std::wstring name = retouchedName(path, number);
    while (bytesIn(nameOfPath(name)) > LONGEST_NAME && stem.size() > nameStart(path) + 1) {
        if (isSecondHalf(stem.back())) stem.pop_back();
        stem.pop_back();
        name = retouchedName(stem + extension, number);
    }
    return name;
}

std::wstring folderOfPath(const std::wstring& path)
{
    return path.substr(0, nameStart(path));
}

std::wstring nameOfPath(const std::wstring& path)
{
    return path.substr(nameStart(path));
}
