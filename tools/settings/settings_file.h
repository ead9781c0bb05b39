// The settings file beside the library: KOVRTCH.INI, section "Cursors". Keys T114 to T123 hold the tools'
// settings, key Font the text font. When it is missing, the older KOVRTOUCH.INI is read; that one is
// never written.
#pragma once

// Fills the record's tool settings and text font. What the file does not name stays as it is. Returns 1.
int readToolSettings();

// Writes all of it; a place that cannot be written to is left alone. Returns 1.
int writeToolSettings();
