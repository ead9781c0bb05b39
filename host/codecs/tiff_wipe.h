// What an edited TIFF file no longer uses.
#pragma once

// Clears, in the edited copy, the pixels of the original's first page that no page has any more: what was retouched
// must not live on between the others. False when it could not be written.
bool wipeUnused(const wchar_t* output, const wchar_t* original);
