#include "tests/session/pictures.h"

#include <cstdlib>
#include <cstring>

#include "tests/session/library_driver.h"
#include "tests/session/screen_picture.h"

void takePicture(const std::string& name, RECT part)
{
    const char* directory = getenv("RETOUCH_PICTURES");
    ASSERT_TRUE(directory);
    ASSERT_TRUE(writeScreenPart(directory + name + ".bmp", part)) << name;
}

RECT windowRect(HWND window)
{
    RECT rect;
    GetWindowRect(window, &rect);
    return rect;
}

void usePhotoOfPictures(SessionTest* session)
{
    const FileBytes file = fileBytes(getenv("RETOUCH_PHOTO") ? getenv("RETOUCH_PHOTO") : "");
    ASSERT_GT(file.size(), sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER));
    BITMAPFILEHEADER head;
    BITMAPINFOHEADER info;
    memcpy(&head, file.data(), sizeof head);
    memcpy(&info, file.data() + sizeof head, sizeof info);
    session->usePhoto(info.biWidth, info.biHeight);
    uint8_t* block = (uint8_t*)GlobalLock(session->photo.block);
    memcpy(block + sizeof info, file.data() + head.bfOffBits, session->photo.bitmapBytes - sizeof info);
    GlobalUnlock(session->photo.block);
    SetWindowTextW(session->host.parent, L"Seeding.jpg - Retouch");
}
