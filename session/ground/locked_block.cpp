#include "session/ground/locked_block.h"

LockedBlock::LockedBlock(HGLOBAL handle) : handle(handle), bytes(handle ? GlobalLock(handle) : nullptr) {}

LockedBlock::~LockedBlock()
{
    if (bytes) GlobalUnlock(handle);
}
