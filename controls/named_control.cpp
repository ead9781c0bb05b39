#include "controls/named_control.h"

NamedControl* namedOf(HWND control)
{
    return (NamedControl*)GetPropW(control, NAMED_PROPERTY);
}

const wchar_t* nameOfControl(HWND control)
{
    const NamedControl* named = namedOf(control);
    return named ? named->name : nullptr;
}
