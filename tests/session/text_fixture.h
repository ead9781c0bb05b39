// Sessions with the text tool: typing, and what the screen and the image must then show, held against the test's
// own drawing of the text.
#pragma once

#include <string>

#include "tests/session/screen_part.h"
#include "tests/session/session_fixture.h"

typedef std::vector<uint8_t> Block;

struct Look {
    LOGFONTA font;
    COLORREF colour;
};

Look defaultLook();  // what a first session types in

// Bytes are characters of the font's code page.
int widthOf(const Look& look, const std::string& text);
int widthOf(const Look& look, const std::wstring& text);

// One byte a pixel, 1 where there is text; from x on, `width` wide and one line high.
Block drawn(const Look& look, const std::string& text, int x, int width);
Block drawn(const Look& look, const std::wstring& text, int x, int width);

struct TextSession : SessionTest {
    Look look = defaultLook();
    Block before;                    // the host's image when the session opened
    reference::StoredPicture empty;  // what the canvas shows without a line

    void SetUp() override;

    // Host window and palette side by side: a click on one would otherwise bring it over the other.
    void openWithText();

    void click(int x, int y);  // on the canvas
    void type(const char* text);
    void key(UINT virtualKey);

    RECT caret() const;  // empty while the canvas has none
    void expectCaret(int x, int top);

    // The image's block with the drawn text stamped from row `top` on.
    void stamp(Block& block, const Block& text, int top, int opacity = 100);
    void stamp(Block& block, const std::string& text, int x, int top, int opacity = 100);

    // The canvas, less the blinking caret, shows the image (at its own size) with the line over it.
    void expectLineOnScreen(const Block& text, int top);
    void expectLineOnScreen(const std::string& text, int x, int top);

    void expectOnScreen(const Block& expected);
    void expectNothingLeft();  // of a line: no caret, nothing in the image, nothing on the screen
};
