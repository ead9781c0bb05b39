#include "host/guide.h"

#include "host/library.h"
#include "host/texts.h"

#include <shellapi.h>

static void showBox(HWND owner, const std::wstring& text, UINT icon)
{
    MessageBoxW(owner, text.c_str(), L"Retouch", MB_OK | icon);
}

void openGuide(HWND owner)
{
    const std::wstring page = programFolder() + L"guide\\guide.html";
    if (GetFileAttributesW(page.c_str()) == INVALID_FILE_ATTRIBUTES ||
        (INT_PTR)ShellExecuteW(owner, L"open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL) <= 32)
        showBox(owner, caption(TEXT_ERROR_NO_GUIDE, page), MB_ICONERROR);
}

void showAbout(HWND owner)
{
    showBox(owner, L"Retouch " RETOUCH_VERSION L"\r\n\r\n" + caption(TEXT_ABOUT), MB_ICONINFORMATION);
}
