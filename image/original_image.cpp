#include "image/original_image.h"

#include <cstring>

#include "image/kept_blocks.h"
#include "image/pixels/pixel_ops.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static bool lockBoth(KeptOriginal& kept)
{
    kept.imageBytes = GlobalLock(kept.image);
    if (!kept.imageBytes) return false;
    kept.size = GlobalSize(kept.image);
    if (kept.size < sizeof(BITMAPINFOHEADER)) return false;
    session->originalImage = takeBlock(kept.size);
    kept.originalBytes = session->originalImage ? GlobalLock(session->originalImage) : nullptr;
    return kept.originalBytes != nullptr;
}

bool keepOriginal(HGLOBAL image)
{
    KeptOriginal& kept = sessionExtras.kept;
    kept = {image, nullptr, nullptr, 0};
    if (!lockBoth(kept)) {
        releaseOriginal();
        return false;
    }
    copyBlock(kept.originalBytes, kept.imageBytes, kept.size);
    return true;
}

// Where the host's image lies now. The system is asked, since the host may have moved or freed its block; only
// when it gives no answer for a block that still exists is it where it was at the start. Null: it is gone.
static void* presentBytes(const KeptOriginal& kept)
{
    void* const bytes = GlobalLock(kept.image);
    if (bytes) {
        GlobalUnlock(kept.image);
        return bytes;
    }
    return GlobalFlags(kept.image) == GMEM_INVALID_HANDLE ? nullptr : kept.imageBytes;
}

// A handle that was freed may by now belong to some other block of the host.
static bool isStillTheImage(const KeptOriginal& kept, const void* bytes)
{
    const SIZE_T size = GlobalSize(kept.image);
    if (size != 0 && size < kept.size) return false;
    return memcmp(bytes, kept.originalBytes, sizeof(BITMAPINFOHEADER)) == 0;
}

void giveBackOriginal()
{
    const KeptOriginal& kept = sessionExtras.kept;
    if (!kept.originalBytes) return;
    void* const bytes = presentBytes(kept);
    if (bytes && isStillTheImage(kept, bytes)) copyBlock(bytes, kept.originalBytes, kept.size);
}

void releaseOriginal()
{
    KeptOriginal& kept = sessionExtras.kept;
    if (kept.imageBytes) GlobalUnlock(kept.image);
    if (kept.originalBytes) GlobalUnlock(session->originalImage);
    releaseBlock(session->originalImage);
    session->originalImage = nullptr;
    kept = {};
}
