// The smallest host in C#: loads a 24-bit BMP file, lets the user retouch it, writes retouched.bmp.
//
//     csc /platform:x64 Host.cs        (or /platform:x86, for the 32-bit libraries)
//
// KOVRTCH32.dll and KOVCTRL32.dll lie beside the program.
using System;
using System.IO;
using System.Runtime.InteropServices;

static class Host
{
    [StructLayout(LayoutKind.Sequential)]
    struct Rect { public int Left, Top, Right, Bottom; }

    [StructLayout(LayoutKind.Sequential)]
    struct Point { public int X, Y; }

    // Returns 1 when the user pressed Save, 0 otherwise; the image stays ours.
    [DllImport("KOVRTCH32.dll", EntryPoint = "#2", CallingConvention = CallingConvention.StdCall)]
    static extern int Retouch(IntPtr parent, IntPtr image, ref Rect dialogRect, ref Point palettePos);

    [DllImport("kernel32.dll")] static extern IntPtr GlobalAlloc(uint flags, UIntPtr bytes);
    [DllImport("kernel32.dll")] static extern IntPtr GlobalLock(IntPtr block);
    [DllImport("kernel32.dll")] static extern bool GlobalUnlock(IntPtr block);
    [DllImport("kernel32.dll")] static extern IntPtr GlobalFree(IntPtr block);
    [DllImport("user32.dll")] static extern int GetSystemMetrics(int index);
    [DllImport("user32.dll")] static extern bool DestroyWindow(IntPtr window);
    [DllImport("user32.dll", CharSet = CharSet.Unicode)]
    static extern IntPtr CreateWindowExW(uint extended, string name, string title, uint style, int x, int y, int width,
                                         int height, IntPtr parent, IntPtr menu, IntPtr instance, IntPtr parameter);

    const int FileHeader = 14, InfoHeader = 40, MoveableBlock = 2;
    const int CaptionHeight = 4, FrameWidth = 32, FrameHeight = 33;  // indices of GetSystemMetrics
    const uint OverlappedVisible = 0x10CF0000;

    // The header and the rows of a BMP file of 24 bits a pixel, bottom row first.
    static byte[] ReadBitmap(string path, out int width, out int height)
    {
        byte[] file = File.ReadAllBytes(path);
        width = height = 0;
        if (file.Length < FileHeader + InfoHeader || BitConverter.ToUInt32(file, 14) != InfoHeader ||
            BitConverter.ToUInt16(file, 28) != 24 || BitConverter.ToUInt32(file, 30) != 0)
            throw new InvalidDataException("not a BMP file of 24 bits a pixel");
        width = BitConverter.ToInt32(file, 18);
        height = BitConverter.ToInt32(file, 22);
        long rows = ((long)width * 3 + 3) / 4 * 4 * height;
        uint start = BitConverter.ToUInt32(file, 10);
        if (width < 1 || height < 1 || start + rows > file.Length) throw new InvalidDataException("the file is cut off");
        byte[] packed = new byte[InfoHeader + rows];
        Array.Copy(file, FileHeader, packed, 0, InfoHeader);
        Array.Clear(packed, 32, 8);  // a colour table, only a hint in such a file, is left out
        Array.Copy(file, start, packed, InfoHeader, rows);
        return packed;
    }

    static void WriteBitmap(string path, byte[] packed)
    {
        byte[] file = new byte[FileHeader + packed.Length];
        file[0] = (byte)'B';
        file[1] = (byte)'M';
        BitConverter.GetBytes(file.Length).CopyTo(file, 2);
        BitConverter.GetBytes(FileHeader + InfoHeader).CopyTo(file, 10);
        packed.CopyTo(file, FileHeader);
        File.WriteAllBytes(path, file);
    }

    // Where the editor goes, frame included: the largest place up to 1000 x 700 of the picture's proportions.
    static Rect EditorPlace(int width, int height)
    {
        double scale = Math.Min(1000.0 / width, 700.0 / height);
        return new Rect {
            Left = 140, Top = 60, Right = 140 + (int)(width * scale) + 2 * GetSystemMetrics(FrameWidth),
            Bottom = 60 + (int)(height * scale) + 2 * GetSystemMetrics(FrameHeight) + GetSystemMetrics(CaptionHeight)
        };
    }

    [STAThread]
    static int Main(string[] words)
    {
        if (words.Length != 1)
        {
            Console.Error.WriteLine("Usage: Host PHOTO.bmp (24 bits a pixel)");
            return 2;
        }
        int width, height;
        byte[] packed = ReadBitmap(words[0], out width, out height);
        IntPtr image = GlobalAlloc(MoveableBlock, (UIntPtr)(ulong)packed.Length);
        if (image == IntPtr.Zero) throw new OutOfMemoryException();
        Marshal.Copy(packed, 0, GlobalLock(image), packed.Length);
        GlobalUnlock(image);  // the library locks it itself
        IntPtr window = CreateWindowExW(0, "STATIC", words[0], OverlappedVisible, 0, 0, 1200, 800, IntPtr.Zero,
                                        IntPtr.Zero, IntPtr.Zero, IntPtr.Zero);
        Rect dialog = EditorPlace(width, height);
        Point palette = new Point { X = 20, Y = 60 };
        int saved = Retouch(window, image, ref dialog, ref palette);  // returns when the user is done
        if (saved == 1)
        {
            Marshal.Copy(GlobalLock(image), packed, 0, packed.Length);
            GlobalUnlock(image);
            WriteBitmap("retouched.bmp", packed);
        }
        DestroyWindow(window);
        GlobalFree(image);  // the image has stayed ours
        Console.WriteLine(saved == 1 ? "Saved: retouched.bmp" : "Nothing saved.");
        return saved == 1 ? 0 : 1;
    }
}
