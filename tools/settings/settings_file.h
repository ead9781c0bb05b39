// The settings file beside the library: KOVRTCH.INI, section "Cursors". Keys T114 to T123 hold the tools'
// settings, key Font the text font. When it is missing, the older KOVRTOUCH.INI is read; that one is
// never written.
#pragma once

// Fills the record's tool settings and text font. What the file does not name stays as it is. Returns 1.
int readToolSettings();

// Writes all of it that was read, was not in the file, or has been changed since; a value that could not be read is
// not replaced by a default: it is read again, and what was changed goes over it. Nothing before readToolSettings. A
// place that cannot be written to is left alone. Returns 1.
int writeToolSettings();

// From here on nothing is written: the session has not started.
void leaveToolSettings();
