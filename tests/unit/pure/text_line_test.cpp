#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "text/kernels/text_line.h"

// The line with guard bytes around its buffer.
struct Guarded {
    std::vector<char> bytes = std::vector<char>(TEXT_BUFFER_SIZE + 32, 0x55);
    int caret = 0;
    LeadBytes leads;
    explicit Guarded(LeadBytes pairs = {}) : leads(pairs) { std::fill(bytes.begin() + 16, bytes.end() - 16, 0); }
    TextLine line() { return {bytes.data() + 16, &caret, leads}; }
    std::string text() { return bytes.data() + 16; }
    bool guardsIntact()
    {
        return std::count(bytes.begin(), bytes.begin() + 16, 0x55) == 16 &&
               std::count(bytes.end() - 16, bytes.end(), 0x55) == 16;
    }
    void type(const char* characters)
    {
        for (; *characters; ++characters)
            typeCharacter(line(), characters, 1);
    }
    bool type(const std::string& character) { return typeCharacter(line(), character.data(), (int)character.size()); }
    // The line cut into characters; a first byte alone would come out as one of its own.
    std::vector<std::string> characters()
    {
        std::vector<std::string> cut;
        const std::string all = text();
        for (size_t i = 0; i < all.size(); i += cut.back().size())
            cut.push_back(all.substr(i, isLeadByte(leads, all[i]) ? 2 : 1));
        return cut;
    }
};

// Of the Japanese code page; second bytes are 0x40..0x7E and 0x80..0xFC, so they may look like first ones.
static const LeadBytes JAPANESE = {{0x81, 0x9F, 0xE0, 0xFC}};

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
    for (int i = 0; i < 5; ++i)
        moveCaretLeft(g.line());
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
    for (int i = 0; i < TEXT_BUFFER_SIZE + 100; ++i)
        g.type("a");
    EXPECT_EQ(TEXT_BUFFER_SIZE - 1, textLength(g.line()));
    moveCaretHome(g.line());
    EXPECT_FALSE(insertSpace(g.line()));
    g.caret = TEXT_BUFFER_SIZE;
    EXPECT_FALSE(g.type(std::string("b")));
    EXPECT_TRUE(g.guardsIntact());
}

TEST(TextLine, LeadBytesAreTheOnesInThePairs)
{
    for (int value = 0; value < 256; ++value) {
        const bool leads = (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
        EXPECT_EQ(leads, isLeadByte(JAPANESE, (char)value)) << value;
        EXPECT_FALSE(isLeadByte({}, (char)value)) << value;
    }
    const LeadBytes full = {{1, 2, 4, 5, 7, 8, 10, 11, 13, 14, 250, 255}};  // as many pairs as there is room for
    EXPECT_TRUE(isLeadByte(full, (char)255));
    EXPECT_FALSE(isLeadByte(full, 3));
}

// The caret steps over both bytes, also where the second one has the value of a first one.
TEST(TextLine, DoubleByteCharactersAreEditedWhole)
{
    Guarded g(JAPANESE);
    g.type(std::string("\x83\x83"));  // one character of two bytes that are both first bytes elsewhere
    g.type(std::string("\x83\x5C"));  // the second byte is a backslash
    g.type("a");
    EXPECT_EQ(5, g.caret);
    const int stops[] = {4, 2, 0, 0};
    for (int stop : stops) {
        moveCaretLeft(g.line());
        EXPECT_EQ(stop, g.caret);
    }
    moveCaretRight(g.line());
    EXPECT_EQ(2, g.caret);
    EXPECT_TRUE(insertSpace(g.line()));
    EXPECT_EQ("\x83\x83 \x83\x5C"
              "a",
              g.text());
    EXPECT_TRUE(backspace(g.line()));
    EXPECT_EQ(" \x83\x5C"
              "a",
              g.text());
    moveCaretRight(g.line());
    EXPECT_TRUE(deleteAtCaret(g.line()));
    EXPECT_EQ(" a", g.text());
}

// One character takes the place of one, whatever their sizes.
TEST(TextLine, TypingWritesOverAWholeCharacter)
{
    Guarded g(JAPANESE);
    g.type("abc");
    moveCaretHome(g.line());
    g.type(std::string("\x82\xA0"));
    EXPECT_EQ("\x82\xA0"
              "bc",
              g.text());
    EXPECT_EQ(2, g.caret);
    moveCaretHome(g.line());
    g.type("x");
    EXPECT_EQ("xbc", g.text());
    EXPECT_EQ(1, g.caret);
    EXPECT_FALSE(g.type(std::string("\x82"))) << "half a character is none";
    EXPECT_EQ("xbc", g.text());
}

// A character that would not fit with both its bytes does not go in at all.
TEST(TextLine, NoLeadByteStandsAloneAtTheBuffersEnd)
{
    for (int before = 0; before < 3; ++before) {
        Guarded g(JAPANESE);
        for (int i = 0; i < before; ++i)
            g.type("a");
        while (g.type(std::string("\x82\xA0"))) {
        }
        const int length = TEXT_BUFFER_SIZE - 1 - (TEXT_BUFFER_SIZE - 1 - before) % 2;
        EXPECT_EQ(length, textLength(g.line()));
        EXPECT_EQ((size_t)(before + (length - before) / 2), g.characters().size());
        EXPECT_TRUE(g.characters().back() == "\x82\xA0");
        moveCaretHome(g.line());
        if (before) {
            // Over one byte there is room for two only when one is free.
            EXPECT_EQ(length + 1 < TEXT_BUFFER_SIZE, g.type(std::string("\x82\xA0")));
        }
        g.caret = TEXT_BUFFER_SIZE - 2;  // behind the end there is room for one byte, and not for two
        if (length < g.caret) {
            EXPECT_FALSE(g.type(std::string("\x82\xA0")));
        }
        EXPECT_TRUE(g.guardsIntact());
    }
}

// The line as a list of characters, and the caret between two of them or `behind` bytes behind the end.
struct LineModel {
    std::vector<std::string> characters;
    size_t caret = 0;
    int behind = 0;

    std::string text() const
    {
        std::string all;
        for (const std::string& character : characters)
            all += character;
        return all;
    }
    int caretByte() const
    {
        size_t bytes = 0;
        for (size_t i = 0; i < caret; ++i)
            bytes += characters[i].size();
        return (int)bytes + behind;
    }
    bool atEnd() const { return caret == characters.size(); }
    void erase()
    {
        if (!atEnd()) characters.erase(characters.begin() + (ptrdiff_t)caret);
    }
    void left()
    {
        if (behind)
            --behind;
        else
            caret -= caret > 0;
    }
    void type(const std::string& character)
    {
        const size_t replaced = atEnd() ? 0 : characters[caret].size();
        const size_t size = character.size();
        if ((size_t)caretByte() + size >= TEXT_BUFFER_SIZE) return;
        if (text().size() - replaced + size >= TEXT_BUFFER_SIZE && !behind) return;
        if (behind) {
            behind += (int)size;  // hidden
            return;
        }
        if (atEnd())
            characters.push_back(character);
        else
            characters[caret] = character;
        ++caret;
    }
};

static std::string randomCharacterOf(const LeadBytes& leads, std::mt19937& random)
{
    const char first = (char)(32 + random() % 224);
    if (!isLeadByte(leads, first)) return std::string(1, first);
    const char second = (char)(0x40 + random() % 0xBD);
    return {first, second};
}

static void randomEdit(Guarded& g, LineModel& model, std::mt19937& random)
{
    switch (random() % 12) {
    case 0:
        moveCaretHome(g.line());
        model.caret = 0, model.behind = 0;
        break;
    case 1:
        moveCaretEnd(g.line());
        model.caret = model.characters.size(), model.behind = 0;
        break;
    case 2:
        moveCaretLeft(g.line());
        model.left();
        break;
    case 3:
        moveCaretRight(g.line());
        model.caret += !model.atEnd();
        break;
    case 4:
        insertSpace(g.line());
        if (!model.atEnd() && model.text().size() + 1 < TEXT_BUFFER_SIZE)
            model.characters.insert(model.characters.begin() + (ptrdiff_t)model.caret, " ");
        break;
    case 5:
        deleteAtCaret(g.line());
        model.erase();
        break;
    case 6:
        backspace(g.line());
        if (!model.characters.empty()) model.left(), model.erase();
        break;
    case 7:
        if (random() % 20 == 0) {  // as a click right of the text leaves it
            g.caret = textLength(g.line()) + 1;
            model.caret = model.characters.size(), model.behind = 1;
        }
        break;
    default: {
        const std::string character = randomCharacterOf(g.leads, random);
        g.type(character);
        model.type(character);
    }
    }
}

static void expectEqual(Guarded& g, const LineModel& model)
{
    ASSERT_EQ(model.text(), g.text());
    ASSERT_EQ(model.caretByte(), g.caret);
    ASSERT_EQ(model.characters, g.characters());
}

// Some of the runs begin with a line that is nearly as long as its buffer.
TEST(TextLine, RandomDoubleByteEditsFollowTheModel)
{
    std::mt19937 random(932);
    for (int run = 0; run < 80 && !HasFatalFailure(); ++run) {
        Guarded g(JAPANESE);
        LineModel model;
        const int filled = run % 20 == 7 ? TEXT_BUFFER_SIZE - 8 : 0;
        while (textLength(g.line()) < filled) {
            const std::string character = randomCharacterOf(g.leads, random);
            g.type(character);
            model.type(character);
        }
        for (int step = 0; step < 250 && !HasFatalFailure(); ++step) {
            SCOPED_TRACE(testing::Message() << "run " << run << " step " << step);
            randomEdit(g, model, random);
            expectEqual(g, model);
        }
        ASSERT_TRUE(g.guardsIntact());
    }
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
            case 0:
                moveCaretHome(g.line());
                caret = 0;
                break;
            case 1:
                moveCaretEnd(g.line());
                caret = text.size();
                break;
            case 2:
                moveCaretLeft(g.line());
                caret -= caret > 0;
                break;
            case 3:
                moveCaretRight(g.line());
                caret += caret < text.size();
                break;
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
                typeCharacter(g.line(), &character, 1);
                if (caret < text.size())
                    text[caret] = character;
                else
                    text += character;
                ++caret;
            }
            }
            ASSERT_EQ(text, g.text()) << "run " << run << " step " << step;
            ASSERT_EQ((int)caret, g.caret) << "run " << run << " step " << step;
        }
        ASSERT_TRUE(g.guardsIntact());
    }
}

// Characters as their code pages define them, from one byte to the most.
struct LongCharacters {
    CharacterForm form;
    std::vector<std::string> characters;
};

const LongCharacters longForms[] = {
    {UTF_8, {"a", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "~", "\xDF\xBF", "\xEF\xBF\xBD", "\xF4\x8F\xBF\xBF"}},
    // The second byte of the two-byte ones may be a letter; the four-byte ones hold digits.
    {GB_18030,
     {"a", "\xB0\xA1", "\x81\x30\x81\x30", "\x81\x41", "7", "\xFE\xFE", "\x95\x32\x82\x36", "\xE3\x32\x9A\x35"}},
};

TEST(LongCharacter, SizesAreToldFromTheFirstBytes)
{
    for (const LongCharacters& set : longForms) {
        const LeadBytes leads = {{}, set.form};
        for (const std::string& character : set.characters) {
            const std::string more = character + "abc";
            EXPECT_EQ((int)character.size(), characterSize(leads, more.data(), LARGEST_CHARACTER)) << more;
            for (size_t part = 1; part < character.size(); ++part)
                EXPECT_EQ(0, characterSize(leads, character.data(), (int)part)) << more << ", " << part;
        }
    }
    EXPECT_EQ(1, characterSize({{}, UTF_8}, "\x80", 1));
    EXPECT_EQ(1, characterSize({{}, UTF_8}, "\xFFzzz", 4));
    EXPECT_EQ(1, characterSize({{}, UTF_8}, "\xE2z", 2)) << "nothing that could still become one";
    EXPECT_EQ(1, characterSize({{}, GB_18030}, "\x81\x30\x20", 3));
}

// Every edit leaves whole characters, whatever came before it: the line is the characters of a plain list.
TEST(LongCharacter, StayWhole)
{
    for (const LongCharacters& set : longForms) {
        std::mt19937 random(11);
        Guarded g({{}, set.form});
        std::vector<std::string> expected;
        size_t at = 0;
        for (int step = 0; step < 20000; ++step) {
            const std::string& character = set.characters[random() % set.characters.size()];
            switch (random() % 8) {
            case 0: moveCaretHome(g.line()), at = 0; break;
            case 1: moveCaretEnd(g.line()), at = expected.size(); break;
            case 2: moveCaretLeft(g.line()), at -= at > 0; break;
            case 3: moveCaretRight(g.line()), at += at < expected.size(); break;
            case 4:
                deleteAtCaret(g.line());
                if (at < expected.size()) expected.erase(expected.begin() + (int)at);
                break;
            case 5:
                backspace(g.line());
                at -= at > 0;
                if (!expected.empty() && at < expected.size()) expected.erase(expected.begin() + (int)at);
                break;
            case 6:
                if (insertSpace(g.line())) expected.insert(expected.begin() + (int)at, " ");
                break;
            default:
                ASSERT_TRUE(typeCharacter(g.line(), character.data(), (int)character.size()));
                if (at < expected.size())
                    expected[at] = character;
                else
                    expected.push_back(character);
                ++at;
            }
            std::string text, front;
            for (size_t i = 0; i < expected.size(); ++i) {
                if (i < at) front += expected[i];
                text += expected[i];
            }
            ASSERT_EQ(text, g.line().buffer) << step;
            ASSERT_EQ((int)front.size(), g.caret) << step;
        }
    }
}

TEST(LongCharacter, PartsAreNotTyped)
{
    for (const LongCharacters& set : longForms) {
        Guarded g({{}, set.form});
        for (const std::string& character : set.characters)
            for (size_t part = 1; part < character.size(); ++part)
                EXPECT_FALSE(typeCharacter(g.line(), character.data(), (int)part));
        EXPECT_STREQ("", g.line().buffer);
    }
}
