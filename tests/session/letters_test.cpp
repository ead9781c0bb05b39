// Every letter of every language, whatever code page the system has: controls and questions hold the text of the
// language files, and what draws it has the letters.
//
// Run for several code pages: where RETOUCH_CODE_PAGE is set the system must have that one.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>

#include "tests/session/import_patch.h"
#include "tests/session/library_fixture.h"
#include "tests/session/screen_part.h"

typedef std::map<std::string, std::wstring> Captions;  // by the language file's keys

struct TestLanguage {
    const char* locale;  // the abbreviation that the system answers
    const char* file;
};

static const TestLanguage testLanguages[] = {
    {"ENU", "EN"}, {"FRA", "FR"}, {"ESN", "ES"}, {"PTB", "PT"}, {"ITA", "IT"}, {"RUS", "RU"},
    {"UKR", "RU"}, {"PLK", "PL"}, {"NLD", "NL"}, {"CHS", "CH"}, {"DEU", "DE"}, {"SKY", "SK"},
    {"HUN", "HU"}, {"JPN", "JP"}, {"CSY", "CS"}, {"TRK", "TR"}, {"LTH", "LT"}, {"KOR", "KO"},
};

struct KeyOfControl {
    int id;
    const char* key;
};

static const KeyOfControl paletteKeys[] = {
    {2, "close"},     {8, "save"},         {114, "contrast"},    {116, "selection"}, {117, "brush"},
    {118, "rubber"},  {119, "aerographe"}, {120, "stamp"},       {121, "smooth"},    {122, "spoonbill"},
    {123, "text"},    {124, "colors"},     {154, "library"},     {190, "undo"},      {191, "redo"},
    {202, "width"},   {204, "height"},     {206, "lock"},        {208, "circle"},    {209, "rectangle"},
    {212, "opacity"}, {213, "edge.full"},  {214, "edge.smooth"},
};
static const KeyOfControl contrastKeys[] = {
    {1, "ok"}, {2, "cancel"}, {150, "contrast"}, {152, "brightness"}, {154, "saturation"}, {156, "hue"},
};
static const KeyOfControl libraryKeys[] = {{2, "library.close"}, {8, "save"}, {9, "delete"}};

static std::wstring wide(const std::string& text)
{
    std::wstring result(text.size(), 0);
    result.resize((size_t)MultiByteToWideChar(CP_UTF8, 0, text.data(), (int)text.size(), &result[0], (int)text.size()));
    return result;
}

static Captions readLanguage(const char* name)
{
    Captions captions;
    std::ifstream file(std::string(LANGUAGE_FILES) + name + ".txt");
    for (std::string line; std::getline(file, line);) {
        const size_t separator = line.find(" = ");
        if (line[0] != '#' && separator != std::string::npos)
            captions[line.substr(0, separator)] = wide(line.substr(separator + 3));
    }
    return captions;
}

static std::wstring textOf(HWND window)
{
    wchar_t text[256] = L"";
    GetWindowTextW(window, text, 256);
    return text;
}

static NONCLIENTMETRICSW systemMetrics()
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return metrics;
}

// What a font draws for a text, in a control's colours.
static reference::StoredPicture drawnText(const LOGFONTW& font, const std::wstring& text)
{
    reference::StoredPicture image = {96, 32, {}};
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, image.width, image.height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HFONT made = CreateFontIndirectW(&font);
    const HGDIOBJ oldBitmap = SelectObject(dc, bitmap), oldFont = SelectObject(dc, made);
    RECT place = {0, 0, image.width, image.height};
    FillRect(dc, &place, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    DrawTextW(dc, text.c_str(), (int)text.size(), &place, DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
    GdiFlush();
    image.bytes.assign((uint8_t*)bits, (uint8_t*)bits + reference::strideOf(image.width) * image.height);
    SelectObject(dc, oldBitmap), SelectObject(dc, oldFont);
    DeleteObject(made), DeleteObject(bitmap), DeleteDC(dc);
    return image;
}

// Letters for which the font draws its box for what it does not have, or a question mark.
static std::wstring lettersMissing(const LOGFONTW& font, const std::wstring& text)
{
    const std::vector<uint8_t> box = drawnText(font, L"\uFFFF").bytes, question = drawnText(font, L"?").bytes;
    std::wstring missing;
    for (wchar_t letter : text) {
        if (letter == L'?') continue;
        const std::vector<uint8_t> drawn = drawnText(font, std::wstring(1, letter)).bytes;
        if (drawn == box || drawn == question) missing += letter;
    }
    return missing;
}

static const uint8_t* pixelOf(const reference::StoredPicture& image, int x, int y)
{
    return &image.bytes[(size_t)(y * reference::strideOf(image.width) + 3 * x)];
}

// The part of a drawing that is not background.
static RECT inkOf(const reference::StoredPicture& image)
{
    RECT ink = {image.width, image.height, 0, 0};
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            if (!memcmp(pixelOf(image, x, y), pixelOf(image, image.width - 1, 0), 3)) continue;
            ink = {std::min<LONG>(ink.left, x), std::min<LONG>(ink.top, y), std::max<LONG>(ink.right, x + 1),
                   std::max<LONG>(ink.bottom, y + 1)};
        }
    return ink;
}

// Whether the drawing's ink stands somewhere on the screen's part, pixel for pixel.
static bool shows(const reference::StoredPicture& screen, const reference::StoredPicture& drawing)
{
    const RECT ink = inkOf(drawing);
    const int width = ink.right - ink.left, height = ink.bottom - ink.top;
    const auto standsAt = [&](int left, int top) {
        for (int y = 0; y < height; ++y)
            if (memcmp(pixelOf(screen, left, top + y), pixelOf(drawing, ink.left, ink.top + y), (size_t)width * 3))
                return false;
        return true;
    };
    for (int top = 0; top + height <= screen.height; ++top)
        for (int left = 0; left + width <= screen.width; ++left)
            if (standsAt(left, top)) return true;
    return false;
}

static std::string escaped(const std::wstring& text)
{
    std::string result;
    char letter[8];
    for (wchar_t unit : text)
        result += (wsprintfA(letter, unit < 128 ? "%c" : "\\u%04X", unit), letter);
    return result;
}

static std::string localeAnswer;

static int WINAPI fakeLocale(LCID locale, LCTYPE type, LPSTR buffer, int size)
{
    if (type != LOCALE_SABBREVLANGNAME) return GetLocaleInfoA(locale, type, buffer, size);
    lstrcpynA(buffer, localeAnswer.c_str(), size);
    return (int)localeAnswer.size() + 1;
}

struct Letters : LibrarySession {
    ImportPatch patch = {};
    Captions captions;

    void SetUp() override
    {
        const char* wanted = getenv("RETOUCH_CODE_PAGE");
        ASSERT_TRUE(!wanted || (UINT)atoi(wanted) == GetACP()) << "the system's code page is " << GetACP();
        LibrarySession::SetUp();
        ASSERT_TRUE(patchImport(&patch, library.module, "GetLocaleInfoA", (void*)fakeLocale));
        putFile(1, referenceTiff(roundSelection(5, 40, 30)));
    }
    void TearDown() override
    {
        undoPatch(&patch);
        LibrarySession::TearDown();
    }

    void useLanguage(const TestLanguage& language)
    {
        localeAnswer = language.locale;
        captions = readLanguage(language.file);
        ASSERT_GT(captions.size(), 30u) << LANGUAGE_FILES << language.file;
    }

    // The one caption that the palette itself shows: in the dialog's font, or in the system's of that size.
    void expectLockDrawn()
    {
        const HWND lock = GetDlgItem(host.palette, ID_LOCK);
        LOGFONTW font = {};
        GetObjectW((HFONT)SendMessageW(lock, WM_GETFONT, 0, 0), sizeof font, &font);
        LOGFONTW linked = systemMetrics().lfMessageFont;
        linked.lfHeight = font.lfHeight;
        EXPECT_TRUE(drawnRight(lock, font) || drawnRight(lock, linked));
    }

    bool drawnRight(HWND lock, const LOGFONTW& font)
    {
        const std::wstring caption = captions["lock"];
        return lettersMissing(font, caption).empty() && shows(shownBy(lock), drawnText(font, caption));
    }

    template <size_t count>
    void expectTexts(HWND dialog, const KeyOfControl (&keys)[count])
    {
        EXPECT_TRUE(IsWindowUnicode(dialog));
        for (const KeyOfControl& row : keys) {
            const std::wstring text = textOf(GetDlgItem(dialog, row.id)), wanted = L"BB:" + captions[row.key];
            EXPECT_EQ(escaped(wanted), escaped(text.substr(0, text.find(L" BMP:")))) << row.key;
        }
    }

    HWND contrastDialog() { return dialogWith(host, ID_RESET_HUE); }

    void expectContrastDialog()
    {
        PostMessageW(host.palette, WM_COMMAND, ID_CONTRAST, 0);
        ASSERT_TRUE(waitUntil("the contrast dialog", [&] { return contrastDialog() != nullptr; }));
        expectTexts(contrastDialog(), contrastKeys);
        PostMessageW(contrastDialog(), WM_COMMAND, ID_CONTRAST_CANCEL, 0);
        ASSERT_TRUE(waitUntil("it to close", [&] { return !contrastDialog(); }));
    }

    void expectLibrary()
    {
        CheckDlgButton(host.palette, ID_LIBRARY, BST_CHECKED);
        PostMessageW(host.palette, WM_COMMAND, ID_LIBRARY, 0);
        ASSERT_TRUE(waitUntil("the library", [&] { return libraryWindow(host) != nullptr; }));
        ASSERT_TRUE(settle(&host));
        expectTexts(libraryWindow(host), libraryKeys);
        SendMessageW(libraryList(host), LB_SETCURSEL, 0, 0);
        PostMessageW(libraryWindow(host), WM_COMMAND, ID_LIBRARY_DELETE, 0);
        ASSERT_TRUE(waitUntil("the question", [&] { return deleteQuestion(host) != nullptr; }));
        EXPECT_EQ(escaped(captions["confirm.delete"]), escaped(questionText(host)));
        PostMessageW(deleteQuestion(host), WM_COMMAND, IDNO, 0);
        ASSERT_TRUE(waitUntil("it to go", [&] { return !deleteQuestion(host); }));
    }
};

TEST_F(Letters, AreRightInEveryDialogOfEveryLanguage)
{
    for (const TestLanguage& language : testLanguages) {
        SCOPED_TRACE(language.locale);
        useLanguage(language);
        ASSERT_TRUE(open());
        expectTexts(host.palette, paletteKeys);
        expectLockDrawn();
        expectContrastDialog();
        expectLibrary();
        PostMessageW(host.palette, WM_COMMAND, ID_CLOSE, 0);
        ASSERT_TRUE(waitForReturn(&host));
    }
}

// What shows the captions: tips and the delete question are the system's, in its fonts.
TEST_F(Letters, AreInTheSystemsFonts)
{
    const NONCLIENTMETRICSW metrics = systemMetrics();
    ASSERT_FALSE(lettersMissing(metrics.lfStatusFont, L"\uE123").empty()) << "a letter that no font has";
    for (const TestLanguage& language : testLanguages) {
        useLanguage(language);
        for (const auto& caption : captions) {
            EXPECT_EQ("", escaped(lettersMissing(metrics.lfStatusFont, caption.second))) << language.file;
            EXPECT_EQ("", escaped(lettersMissing(metrics.lfMessageFont, caption.second))) << language.file;
        }
    }
}
