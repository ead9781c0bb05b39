// What the program says, in the languages of the retouching library.
#pragma once

#include "host/text_ids.h"

#include <string>

// In the language of the user's locale, or else in English: what stands in windows. first and second go where the text
// has %1 and %2.
std::wstring caption(TextId id, const std::wstring& first = L"", const std::wstring& second = L"");

// The same for what is told by report.h: always in English where it goes to a terminal, so that scripts can rely on it.
std::wstring sentence(TextId id, const std::wstring& first = L"", const std::wstring& second = L"");

// Makes sentences those of a terminal, or captions.
void speakToTerminal(bool terminal);
