// Codecs can end a program in a way that it should not go on from: by want of memory where they do not expect it, by a
// crash, by giving up altogether. Then the program still says what is to be said, and ends itself.
#pragma once

using LastWord = void (*)();  // does not return

// From now on, on every thread.
void guardCodecs(LastWord withoutMemory, LastWord afterCrash);
void unguardCodecs();
