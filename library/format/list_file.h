// The library's list file: its first line is the last number used, each save adds the name of its file.
// The list serves only for numbering; the files themselves are what the library holds.
#pragma once

#include <cstddef>

constexpr int COUNTER_DIGITS = 3;
constexpr size_t LIST_TEXT_SIZE = 32;  // characters, enough for every line formatted here

// The number at the start of a list file of which `length` bytes (at most 3 count) were read: it ends at
// the first character that is no digit; without any digit it is 0.
int parseCounter(const char* text, size_t length);

// What is written over the counter: the FIRST three characters of the number. After 999 comes file 1000,
// but "100" is stored and the next save writes file 101 again: users' lists are numbered so.
void formatCounter(char (&text)[LIST_TEXT_SIZE], int number);

// "seld_001.tif"
void formatSelectionName(char (&text)[LIST_TEXT_SIZE], int number);

// "seld_001.tif" with its line end, CR LF as in the rest of the file.
void formatListLine(char (&text)[LIST_TEXT_SIZE], int number);
