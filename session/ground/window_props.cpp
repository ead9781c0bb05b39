#include "session/ground/window_props.h"

#include "session/ground/session_record.h"

static LPCSTR keyName(int key)
{
    return MAKEINTATOM(key);
}

void setWindowProp(HWND window, int key, HANDLE value)
{
    SetPropA(window, keyName(key), value);
}

HANDLE windowProp(HWND window, int key)
{
    return window ? GetPropA(window, keyName(key)) : nullptr;
}

void removeWindowProp(HWND window, int key)
{
    RemovePropA(window, keyName(key));
}

static BOOL CALLBACK removeProp(HWND window, LPCSTR name, HANDLE)
{
    RemovePropA(window, name);
    return TRUE;
}

void removeAllProps(HWND window)
{
    EnumPropsA(window, removeProp);
}

HGLOBAL editedImage()
{
    return session ? (HGLOBAL)windowProp(session->hostDialog, PROP_IMAGE) : nullptr;
}
