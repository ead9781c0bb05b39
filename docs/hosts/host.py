"""The smallest host in Python: loads a 24-bit BMP file, lets the user retouch it, writes retouched.bmp.

    py host.py PHOTO.bmp

KOVRTCH32.dll and KOVCTRL32.dll lie beside this file, built for the same number of bits as the Python that runs it.
"""
import ctypes
import os
import struct
import sys
from ctypes import wintypes

FILE_HEADER, INFO_HEADER = struct.Struct("<2sIHHI"), struct.Struct("<IiiHHIIiiII")
GMEM_MOVEABLE = 2
SM_CYCAPTION, SM_CXFRAME, SM_CYFRAME = 4, 32, 33
WS_OVERLAPPEDWINDOW, WS_VISIBLE = 0x00CF0000, 0x10000000

kernel32 = ctypes.WinDLL("kernel32")
user32 = ctypes.WinDLL("user32")
kernel32.GlobalAlloc.restype = kernel32.GlobalLock.restype = kernel32.GlobalFree.restype = ctypes.c_void_p
kernel32.GlobalAlloc.argtypes = (wintypes.UINT, ctypes.c_size_t)
for name in ("GlobalLock", "GlobalUnlock", "GlobalFree"):
    getattr(kernel32, name).argtypes = (ctypes.c_void_p,)
user32.CreateWindowExW.restype = wintypes.HWND
user32.CreateWindowExW.argtypes = (wintypes.DWORD, wintypes.LPCWSTR, wintypes.LPCWSTR, wintypes.DWORD, ctypes.c_int,
                                   ctypes.c_int, ctypes.c_int, ctypes.c_int, wintypes.HWND, wintypes.HMENU,
                                   wintypes.HINSTANCE, wintypes.LPVOID)
user32.DestroyWindow.argtypes = (wintypes.HWND,)


def load_entry():
    """The library's one function, which it exports by ordinal 2."""
    library = ctypes.WinDLL(os.path.join(os.path.dirname(os.path.abspath(__file__)), "KOVRTCH32.dll"))
    prototype = ctypes.WINFUNCTYPE(ctypes.c_int, wintypes.HWND, ctypes.c_void_p, ctypes.POINTER(wintypes.RECT),
                                   ctypes.POINTER(wintypes.POINT))
    return prototype((2, library))


def read_bitmap(path):
    """The header and the rows of a 24-bit BMP file, with width and height."""
    with open(path, "rb") as file:
        data = file.read()
    magic, _, _, _, pixels = FILE_HEADER.unpack_from(data)
    size, width, height, _, bits, compression, _, _, _, _, _ = INFO_HEADER.unpack_from(data, FILE_HEADER.size)
    if (magic, size, bits, compression) != (b"BM", INFO_HEADER.size, 24, 0) or width < 1 or height < 1:
        raise ValueError("not a BMP file of 24 bits a pixel, bottom row first")
    row_bytes = (width * 3 + 3) & ~3
    rows = data[pixels:pixels + row_bytes * height]
    if len(rows) != row_bytes * height:
        raise ValueError("the file is cut off")
    header = data[FILE_HEADER.size:FILE_HEADER.size + INFO_HEADER.size]
    # A colour table, only a hint in such a file, is left out.
    return header[:32] + bytes(8) + rows, width, height


def editor_place(width, height):
    """Where the editor goes, frame included: the largest place up to 1000 x 700 of the picture's proportions."""
    scale = min(1000 / width, 700 / height)
    right = 140 + round(width * scale) + 2 * user32.GetSystemMetrics(SM_CXFRAME)
    bottom = 60 + round(height * scale) + 2 * user32.GetSystemMetrics(SM_CYFRAME) + user32.GetSystemMetrics(
        SM_CYCAPTION)
    return wintypes.RECT(140, 60, right, bottom)


def main():
    if len(sys.argv) != 2:
        sys.exit("Usage: host.py PHOTO.bmp (24 bits a pixel)")
    retouch = load_entry()
    packed, width, height = read_bitmap(sys.argv[1])
    image = kernel32.GlobalAlloc(GMEM_MOVEABLE, len(packed))
    if not image:
        sys.exit("Not enough memory.")
    ctypes.memmove(kernel32.GlobalLock(image), packed, len(packed))
    kernel32.GlobalUnlock(image)  # the library locks it itself
    window = user32.CreateWindowExW(0, "STATIC", os.path.basename(sys.argv[1]), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                    1200, 800, None, None, None, None)
    dialog, palette = editor_place(width, height), wintypes.POINT(20, 60)
    saved = retouch(window, image, ctypes.byref(dialog), ctypes.byref(palette))  # returns when the user is done
    if saved == 1:
        edited = ctypes.string_at(kernel32.GlobalLock(image), len(packed))
        kernel32.GlobalUnlock(image)
        offset = FILE_HEADER.size + INFO_HEADER.size
        with open("retouched.bmp", "wb") as file:
            file.write(FILE_HEADER.pack(b"BM", FILE_HEADER.size + len(edited), 0, 0, offset) + edited)
    user32.DestroyWindow(window)
    kernel32.GlobalFree(image)  # the image has stayed ours
    print("Saved: retouched.bmp" if saved == 1 else "Nothing saved.")
    return 0 if saved == 1 else 1


if __name__ == "__main__":
    sys.exit(main())
