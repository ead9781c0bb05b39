#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "text/text_line.h"

namespace {

// The line with guard bytes around its buffer.
struct Guarded {
    std::vector<char> bytes = std::vector<char>(TEXT_BUFFER_SIZE + 32, 0x55);
    int caret = 0;
    Guarded() { std::fill(bytes.begin() + 16, bytes.end() - 16, 0); }
    TextLine line() { return {bytes.data() + 16, &caret}; }
    std::string text() { return bytes.data() + 16; }
    bool guardsIntact()
    {
        return std::count(bytes.begin(), bytes.begin() + 16, 0x55) == 16 &&
               std::count(bytes.end() - 16, bytes.end(), 0x55) == 16;
    }
    void type(const char* characters)
    {
        for (; *characters; ++characters) typeCharacter(line(), *characters);
    }
};

}  // namespace

TEST(TextLine, TypingOverwritesAndExtendsAtTheEnd)
{
    Guarded g;
    g.type("abc");
    moveCaretHome(g.line());
    g.type("X");
    EXPECT_EQ("Xbc", g.text());
    EXPECT_EQ(1, g.caret);
    moveCaretEnd(g.line());
    g.type("d");
    EXPECT_EQ("Xbcd", g.text());
}

TEST(TextLine, BackspaceAtTheStartDeletesTheFirstCharacter)
{
    Guarded g;
    g.type("abc");
    moveCaretHome(g.line());
    EXPECT_TRUE(backspace(g.line()));
    EXPECT_EQ("bc", g.text());
    EXPECT_EQ(0, g.caret);
}

TEST(TextLine, BackspaceInTheMiddleAndInAnEmptyLine)
{
    Guarded g;
    EXPECT_FALSE(backspace(g.line()));
    g.type("abc");
    EXPECT_TRUE(backspace(g.line()));
    EXPECT_EQ("ab", g.text());
    EXPECT_EQ(2, g.caret);
}

TEST(TextLine, InsertMakesRoomOnlyBeforeTheEnd)
{
    Guarded g;
    EXPECT_FALSE(insertSpace(g.line()));
    g.type("abc");
    EXPECT_FALSE(insertSpace(g.line()));
    moveCaretLeft(g.line());
    EXPECT_TRUE(insertSpace(g.line()));
    EXPECT_EQ("ab c", g.text());
    EXPECT_EQ(2, g.caret);
}

TEST(TextLine, DeleteRemovesTheCharacterAtTheCaret)
{
    Guarded g;
    g.type("abc");
    EXPECT_FALSE(deleteAtCaret(g.line()));
    moveCaretHome(g.line());
    EXPECT_TRUE(deleteAtCaret(g.line()));
    EXPECT_EQ("bc", g.text());
}

TEST(TextLine, CaretStaysBetweenStartAndEnd)
{
    Guarded g;
    g.type("ab");
    moveCaretRight(g.line());
    EXPECT_EQ(2, g.caret);
    for (int i = 0; i < 5; ++i) moveCaretLeft(g.line());
    EXPECT_EQ(0, g.caret);
}

TEST(TextLine, TypedBehindTheEndDoesNotShow)
{
    Guarded g;
    g.type("abc");
    g.caret = 4;  // where a click right of the text leaves it
    g.type("x");
    EXPECT_EQ("abc", g.text());
    EXPECT_EQ(5, g.caret);
    moveCaretEnd(g.line());
    g.type("d");
    EXPECT_EQ("abcd", g.text());
}

TEST(TextLine, BufferIsNeverPassed)
{
    Guarded g;
    for (int i = 0; i < TEXT_BUFFER_SIZE + 100; ++i) typeCharacter(g.line(), 'a');
    EXPECT_EQ(TEXT_BUFFER_SIZE - 1, textLength(g.line()));
    moveCaretHome(g.line());
    EXPECT_FALSE(insertSpace(g.line()));
    g.caret = TEXT_BUFFER_SIZE;
    EXPECT_FALSE(typeCharacter(g.line(), 'b'));
    EXPECT_TRUE(g.guardsIntact());
}

// Thousands of random edits against a model of a std::string and a caret.
TEST(TextLine, RandomEditsFollowTheModel)
{
    std::mt19937 random(20);
    for (int run = 0; run < 200; ++run) {
        Guarded g;
        std::string text;
        size_t caret = 0;
        for (int step = 0; step < 100; ++step) {
            switch (random() % 9) {
            case 0: moveCaretHome(g.line()); caret = 0; break;
            case 1: moveCaretEnd(g.line()); caret = text.size(); break;
            case 2: moveCaretLeft(g.line()); caret -= caret > 0; break;
            case 3: moveCaretRight(g.line()); caret += caret < text.size(); break;
            case 4:
                insertSpace(g.line());
                if (caret < text.size()) text.insert(caret, 1, ' ');
                break;
            case 5:
                deleteAtCaret(g.line());
                if (caret < text.size()) text.erase(caret, 1);
                break;
            case 6:
                backspace(g.line());
                if (!text.empty()) {
                    caret -= caret > 0;
                    if (caret < text.size()) text.erase(caret, 1);
                }
                break;
            default: {
                const char character = (char)('a' + random() % 26);
                typeCharacter(g.line(), character);
                if (caret < text.size()) text[caret] = character;
                else text += character;
                ++caret;
            }
            }
            ASSERT_EQ(text, g.text()) << "run " << run << " step " << step;
            ASSERT_EQ((int)caret, g.caret) << "run " << run << " step " << step;
        }
        ASSERT_TRUE(g.guardsIntact());
    }
}
