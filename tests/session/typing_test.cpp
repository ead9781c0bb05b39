// Real typing in a running session: characters as the keyboard and input methods bring them, in the system's code
// page, and the keys that edit. What must show is drawn from the characters themselves, not from bytes.
//
// Run for several code pages: where RETOUCH_CODE_PAGE is set the system must have that one.
#include <windows.h>

#include <cstdlib>
#include <random>

#include "tests/session/text_fixture.h"

struct Script {
    UINT codePage;
    BYTE charSet;
    const wchar_t* words;  // some accents, two cases, other bytes above 127
    const wchar_t* more;
};

// The Japanese words mix characters of two bytes with those of one; the second byte of some is a backslash, a
// letter or a byte that begins other characters.
static const Script scripts[] = {
    {1252, ANSI_CHARSET, L"a\u00E9\u00DF\u20AC\u00C4\u00FF", L"x\u00E8Y\u0160~\u00F1"},
    {1251, RUSSIAN_CHARSET, L"\u0416\u044F\u0451a\u0429\u2116", L"\u042B\u0444X\u0401~\u0434"},
    {932, SHIFTJIS_CHARSET, L"\u65E5a\u672C\u30BD\uFF71\u8868", L"\u6F22~\u30A2\u3042\uFF76X"},
    {0, DEFAULT_CHARSET, L"abcdef", L"xyzXYZ"},  // any other one
};

static const Script& systemsScript()
{
    const Script* script = scripts;
    while (script->codePage && script->codePage != GetACP())
        ++script;
    return *script;
}

static bool hasGlyphs(const Look& look, const std::wstring& text)
{
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontIndirectA(&look.font);
    const HGDIOBJ old = SelectObject(dc, font);
    std::vector<WORD> glyphs(text.size());
    GetGlyphIndicesW(dc, text.c_str(), (int)text.size(), glyphs.data(), GGI_MARK_NONEXISTING_GLYPHS);
    SelectObject(dc, old);
    DeleteObject(font);
    DeleteDC(dc);
    for (WORD glyph : glyphs)
        if (glyph == 0xFFFF) return false;
    return true;
}

static void sendKey(WORD key, WORD character, DWORD flags)
{
    INPUT inputs[2] = {};
    for (INPUT& input : inputs) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.wScan = character;
        input.ki.dwFlags = flags;
    }
    inputs[1].ki.dwFlags |= KEYEVENTF_KEYUP;
    SendInput(2, inputs, sizeof inputs[0]);
}

constexpr int LEFT = 40, TOP = 54;

struct Typing : TextSession {
    Script script = {};
    std::wstring words, more;

    void SetUp() override
    {
        const char* wanted = getenv("RETOUCH_CODE_PAGE");
        ASSERT_TRUE(!wanted || (UINT)atoi(wanted) == GetACP()) << "the system's code page is " << GetACP();
        TextSession::SetUp();
        script = systemsScript();
        words = script.words;
        more = script.more;
        look.font.lfCharSet = script.charSet;
        ASSERT_TRUE(hasGlyphs(look, words + more)) << "no font for code page " << script.codePage;
        openWithText();
        click(LEFT, TOP + 16);
        runOnHost(&host, [&] { SetForegroundWindow(host.dialog), SetFocus(host.canvas); });
    }

    void typeKeys(const std::wstring& text)
    {
        for (wchar_t character : text)
            sendKey(0, (WORD)character, KEYEVENTF_UNICODE);
        ASSERT_TRUE(settle(&host));
    }

    void pressKey(WORD virtualKey)
    {
        sendKey(virtualKey, 0, 0);
        ASSERT_TRUE(settle(&host));
    }

    void expectLine(const std::wstring& text, size_t caretAt)
    {
        expectCaret(LEFT + widthOf(look, text.substr(0, caretAt)), TOP);
        expectLineOnScreen(drawn(look, text, LEFT, photo.width), TOP);
    }

    void expectStamped(const std::wstring& text)
    {
        Block stamped = before;
        stamp(stamped, drawn(look, text, LEFT, photo.width), TOP);
        EXPECT_FALSE(stamped == before);
        EXPECT_TRUE(stamped == snapshot(photo));
    }
};

TEST_F(Typing, CharactersAreThoseOfTheSystemsCodePage)
{
    typeKeys(words);
    expectLine(words, words.size());
    pressKey(VK_RETURN);
    expectStamped(words);
    expectCaret(LEFT, TOP + 16);
    closeAndCheck(before);
}

TEST_F(Typing, KeysTakeWholeCharacters)
{
    std::wstring text = words;
    typeKeys(text);
    for (size_t caretAt = text.size(); caretAt-- > 0;) {
        pressKey(VK_LEFT);
        expectLine(text, caretAt);
    }
    for (size_t i = 0; i < 3; ++i) {  // one character over another, of one byte or two
        typeKeys(more.substr(i, 1));
        text[i] = more[i];
        expectLine(text, i + 1);
    }
    pressKey(VK_BACK);
    text.erase(2, 1);
    expectLine(text, 2);
    pressKey(VK_DELETE);
    text.erase(2, 1);
    expectLine(text, 2);
    pressKey(VK_INSERT);
    text.insert(2, L" ");
    expectLine(text, 2);
    pressKey(VK_RETURN);
    expectStamped(text);
    closeAndCheck(before);
}

// What an input method hands over is one message for a character; the system makes characters typed of it.
TEST_F(Typing, InputMethodsCharacters)
{
    for (wchar_t character : words) {
        BYTE bytes[2] = {};
        const int size = WideCharToMultiByte(CP_ACP, 0, &character, 1, (char*)bytes, 2, nullptr, nullptr);
        PostMessageA(host.canvas, WM_IME_CHAR, size == 2 ? bytes[0] << 8 | bytes[1] : bytes[0], 1);
        ASSERT_TRUE(settle(&host));
    }
    expectLine(words, words.size());
    pressKey(VK_RETURN);
    expectStamped(words);
    closeAndCheck(before);
}

// Keys at random against the line as a string of characters and a caret in it.
TEST_F(Typing, RandomKeysFollowTheModel)
{
    static const WORD keys[] = {VK_HOME, VK_END, VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN, VK_INSERT, VK_DELETE, VK_BACK};
    const std::wstring letters = words + more;
    std::mt19937 random(script.codePage);
    std::wstring text;
    size_t at = 0;
    for (int step = 0; step < 120 && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        if (random() % 2 && text.size() < 10) {
            const wchar_t letter = letters[random() % letters.size()];
            typeKeys(std::wstring(1, letter));
            text.replace(at++, 1, 1, letter);  // at the end there is none to replace
        } else {
            const WORD pressed = keys[random() % (sizeof keys / sizeof *keys)];
            pressKey(pressed);
            if (pressed == VK_HOME) at = 0;
            if (pressed == VK_END) at = text.size();
            if (pressed == VK_LEFT || pressed == VK_UP || (pressed == VK_BACK && !text.empty())) at -= at > 0;
            if ((pressed == VK_RIGHT || pressed == VK_DOWN) && at < text.size()) ++at;
            if (pressed == VK_INSERT && at < text.size()) text.insert(at, L" ");
            if ((pressed == VK_DELETE || pressed == VK_BACK) && at < text.size()) text.erase(at, 1);
        }
        expectLine(text, at);
    }
    closeAndCheck(before);
}
