#include "tools/brush/picked_patch.h"

#include "image/kept_blocks.h"
#include "session/ground/session_record.h"

void dropPickedPatch()
{
    releaseBlock(session->maskCache);
    session->maskCache = nullptr;
}
