#include "host/desk.h"

#include "host/host_window.h"
#include "host/open_photo.h"
#include "host/texts.h"
#include "host/waiting_photos.h"

// False when the user does not want the photos that still wait.
static bool goesOn(ExitCode code)
{
    if (code == exitNoLibrary) return false;
    if (code != exitNothingSaved || !anyWaiting()) return true;
    return ask(caption(TEXT_QUESTION_NEXT, namesOfWaiting()), true);
}

static void forgetWaiting()
{
    std::wstring photo;
    while (takeWaiting(&photo)) {
    }
}

// The photo whose result the window shows.
static SaveRequest shown;

static void hideResult()
{
    showPicture(nullptr);
    shown.image = GlobalFree(shown.image);
    showTitle(L"");
}

static void showResult()
{
    showTitle(nameOfPath(shown.output));
    showPicture(shown.image);
}

static ExitCode retouchAtDesk(const std::wstring& photo)
{
    PhotoTask task;
    task.photo = photo;
    task.ask = true;
    hideResult();
    const ExitCode code = retouchPhoto(task, &shown);
    if (code == exitSaved) {
        showResult();
    } else {
        showTitle(L"");
        showHint();
    }
    if (!goesOn(code)) forgetWaiting();
    return code;
}

static void openChosen()
{
    for (const std::wstring& photo : askForPhotos())
        addWaiting(photo);
}

static void saveShownAs()
{
    saveAsking(&shown, true);
    showResult();
}

ExitCode retouchWaiting(PhotoTask task)
{
    ExitCode result = exitSaved;
    while (takeWaiting(&task.photo)) {
        const ExitCode code = retouchPhoto(task, nullptr);
        if (result == exitSaved) result = code;
        if (!goesOn(code)) break;
        task.output.clear();  // what is dropped later goes beside its photo
    }
    return result;
}

ExitCode keepDesk()
{
    ExitCode result = exitNothingSaved;
    bool first = true;
    showHint();
    showHostWindow();
    offerAbandonedWork();
    showHint();
    do {
        std::wstring photo;
        while (takeWaiting(&photo)) {
            const ExitCode code = retouchAtDesk(photo);
            if (first || result == exitSaved) result = code;
            first = false;
        }
        const HostCommand command = takeCommand();
        if (command == COMMAND_OPEN) openChosen();
        if (command == COMMAND_SAVE_AS) saveShownAs();
    } while (anyWaiting() || serveMessage());
    hideResult();
    return result;
}
