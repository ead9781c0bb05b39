#include "controls/accessible.h"

#include <oleacc.h>
#include <string.h>

#include <new>

#include "controls/caption.h"
#include "controls/named_control.h"

constexpr wchar_t COM_PROPERTY[] = L"KovAccessible";  // set while the control keeps COM going on its thread

constexpr int PLAIN_LENGTH = 512;

// Only a program that asks costs the loading of these.
struct SystemCalls {
    HRESULT(WINAPI* stdObject)(HWND, LONG, REFIID, void**);
    LRESULT(WINAPI* resultOf)(REFIID, WPARAM, LPUNKNOWN);
    HRESULT(WINAPI* beginCom)(void*, DWORD);
    void(WINAPI* endCom)();
    HRESULT(WINAPI* disconnect)(LPUNKNOWN, DWORD);
    BSTR(WINAPI* newText)(const OLECHAR*);
};

template <typename Function>
static bool take(Function& function, const wchar_t* library, const char* name)
{
    const HMODULE module = LoadLibraryW(library);
    const FARPROC address = module ? GetProcAddress(module, name) : nullptr;
    static_assert(sizeof function == sizeof address, "both are addresses of code");
    memcpy(&function, &address, sizeof function);
    return address != nullptr;
}

static bool loadCalls(SystemCalls& calls)
{
    return take(calls.stdObject, L"oleacc.dll", "CreateStdAccessibleObject") &&
           take(calls.resultOf, L"oleacc.dll", "LresultFromObject") &&
           take(calls.beginCom, L"ole32.dll", "CoInitializeEx") && take(calls.endCom, L"ole32.dll", "CoUninitialize") &&
           take(calls.disconnect, L"ole32.dll", "CoDisconnectObject") &&
           take(calls.newText, L"oleaut32.dll", "SysAllocString");
}

static const SystemCalls* systemCalls()
{
    static SystemCalls calls;
    static bool tried, found;
    if (!tried) found = loadCalls(calls);
    tried = true;
    return found ? &calls : nullptr;
}

void readPlainName(HWND control, wchar_t* text, int length)
{
    text[0] = 0;
    if (const wchar_t* name = nameOfControl(control)) {
        lstrcpynW(text, name, length);
        return;
    }
    GetWindowTextW(control, text, length);
    shownText(text);
    removeAccessKeys(text);
}

static HRESULT giveText(const wchar_t* text, BSTR* given)
{
    *given = *text ? systemCalls()->newText(text) : nullptr;
    return *text ? (*given ? S_OK : E_OUTOFMEMORY) : S_FALSE;
}

static bool isSelf(const VARIANT& child)
{
    return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

// A named control that is no button is a bar.
static bool isBar(HWND control)
{
    wchar_t name[16] = L"";
    GetClassNameW(control, name, 16);
    return lstrcmpiW(name, L"SCROLLBAR") == 0;
}

struct ControlObject;
static SRWLOCK objectsLock = SRWLOCK_INIT;
static ControlObject* objects;  // all that there are

static void listObject(ControlObject* object);
static void unlistObject(ControlObject* object);

// Lives as long as somebody holds it, also longer than its control: then it has no name and no value any more.
struct ControlObject final : IAccessible {
    ControlObject* next = nullptr;
    LONG references = 1;
    HWND control;
    IAccessible* system;  // owned

    ControlObject(HWND window, IAccessible* answer) : control(window), system(answer) {}

    STDMETHODIMP QueryInterface(REFIID id, void** given) override
    {
        const bool ours =
            IsEqualGUID(id, IID_IUnknown) || IsEqualGUID(id, IID_IDispatch) || IsEqualGUID(id, IID_IAccessible);
        *given = ours ? this : nullptr;
        if (ours) AddRef();
        return ours ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return (ULONG)InterlockedIncrement(&references); }
    STDMETHODIMP_(ULONG) Release() override
    {
        const LONG left = InterlockedDecrement(&references);
        if (left) return (ULONG)left;
        unlistObject(this);
        system->Release();
        HeapFree(GetProcessHeap(), 0, this);
        return 0;
    }

    STDMETHODIMP get_accName(VARIANT child, BSTR* name) override
    {
        if (!isSelf(child)) return system->get_accName(child, name);
        wchar_t text[PLAIN_LENGTH];
        readPlainName(control, text, PLAIN_LENGTH);
        return giveText(text, name);
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* value) override
    {
        if (!isSelf(child) || !isBar(control)) return system->get_accValue(child, value);
        wchar_t text[16];
        wsprintfW(text, L"%d", GetScrollPos(control, SB_CTL));
        return giveText(text, value);
    }

    // What the system answers.
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return system->GetTypeInfoCount(count); }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override
    {
        return system->GetTypeInfo(index, locale, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override
    {
        return system->GetIDsOfNames(id, names, count, locale, ids);
    }
    STDMETHODIMP Invoke(DISPID member, REFIID id, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argument) override
    {
        return system->Invoke(member, id, locale, flags, parameters, result, exception, argument);
    }
    STDMETHODIMP get_accParent(IDispatch** parent) override { return system->get_accParent(parent); }
    STDMETHODIMP get_accChildCount(long* count) override { return system->get_accChildCount(count); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) override
    {
        return system->get_accChild(child, object);
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* text) override
    {
        return system->get_accDescription(child, text);
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) override { return system->get_accRole(child, role); }
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) override { return system->get_accState(child, state); }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* text) override { return system->get_accHelp(child, text); }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override
    {
        return system->get_accHelpTopic(file, child, topic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* text) override
    {
        return system->get_accKeyboardShortcut(child, text);
    }
    STDMETHODIMP get_accFocus(VARIANT* child) override { return system->get_accFocus(child); }
    STDMETHODIMP get_accSelection(VARIANT* children) override { return system->get_accSelection(children); }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* text) override
    {
        return system->get_accDefaultAction(child, text);
    }
    STDMETHODIMP accSelect(long flags, VARIANT child) override { return system->accSelect(flags, child); }
    STDMETHODIMP accLocation(long* left, long* top, long* width, long* height, VARIANT child) override
    {
        return system->accLocation(left, top, width, height, child);
    }
    STDMETHODIMP accNavigate(long direction, VARIANT start, VARIANT* end) override
    {
        return system->accNavigate(direction, start, end);
    }
    STDMETHODIMP accHitTest(long left, long top, VARIANT* child) override
    {
        return system->accHitTest(left, top, child);
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override { return system->accDoDefaultAction(child); }
    STDMETHODIMP put_accName(VARIANT child, BSTR name) override { return system->put_accName(child, name); }
    STDMETHODIMP put_accValue(VARIANT child, BSTR value) override { return system->put_accValue(child, value); }
};

static void listObject(ControlObject* object)
{
    AcquireSRWLockExclusive(&objectsLock);
    object->next = objects;
    objects = object;
    ReleaseSRWLockExclusive(&objectsLock);
}

static void unlistObject(ControlObject* object)
{
    AcquireSRWLockExclusive(&objectsLock);
    ControlObject** link = &objects;
    while (*link != object)
        link = &(*link)->next;
    *link = object->next;
    ReleaseSRWLockExclusive(&objectsLock);
}

// Held for the caller; null when there is none.
static ControlObject* objectOf(HWND control)
{
    AcquireSRWLockShared(&objectsLock);
    ControlObject* found = objects;
    while (found && found->control != control)
        found = found->next;
    if (found) found->AddRef();
    ReleaseSRWLockShared(&objectsLock);
    return found;
}

// The system asks the control for the class that it is built on.
static IAccessible* systemAnswer(const SystemCalls& calls, HWND control)
{
    void* found = nullptr;
    return SUCCEEDED(calls.stdObject(control, OBJID_CLIENT, IID_IAccessible, &found)) ? (IAccessible*)found : nullptr;
}

// Handing an object over needs COM on the thread, which is the host's: what is begun here ends with the control.
static void keepComGoing(const SystemCalls& calls, HWND control)
{
    if (GetPropW(control, COM_PROPERTY)) return;
    if (FAILED(calls.beginCom(nullptr, COINIT_APARTMENTTHREADED))) return;  // another kind runs already
    if (!SetPropW(control, COM_PROPERTY, (HANDLE)1)) calls.endCom();
}

// Somebody in this process still holds an object, whose code is here.
static void stayLoaded()
{
    HMODULE self;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, (LPCWSTR)stayLoaded,
                       &self);
}

static ControlObject* newObject(const SystemCalls& calls, HWND control)
{
    IAccessible* answer = systemAnswer(calls, control);
    if (!answer) return nullptr;
    void* const room = HeapAlloc(GetProcessHeap(), 0, sizeof(ControlObject));
    if (!room) {
        answer->Release();
        return nullptr;
    }
    ControlObject* const object = new (room) ControlObject(control, answer);
    listObject(object);
    return object;
}

LRESULT answerObjectRequest(HWND control, WPARAM wp, LPARAM lp)
{
    const SystemCalls* calls = (LONG)lp == OBJID_CLIENT ? systemCalls() : nullptr;
    if (!calls) return 0;
    ControlObject* object = objectOf(control);
    if (!object) object = newObject(*calls, control);
    if (!object) return 0;
    keepComGoing(*calls, control);
    const LRESULT result = calls->resultOf(IID_IAccessible, wp, object);
    object->Release();
    return FAILED((HRESULT)result) ? 0 : result;
}

// Other programs lose the object now.
void endObjectRequests(HWND control)
{
    if (ControlObject* object = objectOf(control)) {
        systemCalls()->disconnect(object, 0);
        object->control = nullptr;
        if (object->Release()) stayLoaded();
    }
    if (RemovePropW(control, COM_PROPERTY)) systemCalls()->endCom();
}
