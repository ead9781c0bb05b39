#include "tools/brush/picked_patch.h"

#include "image/kept_blocks.h"
#include "session/ground/session_extras.h"
#include "session/ground/session_record.h"

static PatchAside& aside = sessionExtras.press.patch;

void dropPickedPatch()
{
    releaseBlock(session->maskCache);
    session->maskCache = nullptr;
}

void setPickedPatchAside()
{
    forgetPatchAside();
    aside = {true, session->maskCache};
    session->maskCache = nullptr;
}

void forgetPatchAside()
{
    releaseBlock(aside.patch);
    aside = {};
}

void takePatchBack()
{
    if (!aside.kept) return;
    dropPickedPatch();
    session->maskCache = aside.patch;
    aside = {};
}
