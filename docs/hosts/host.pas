{ The smallest host in Free Pascal: loads a 24-bit BMP file, lets the user retouch it, writes retouched.bmp.

      fpc -Twin64 host.pas            (or -Twin32, for the 32-bit libraries)

  KOVRTCH32.dll and KOVCTRL32.dll lie beside the program. }
program host;
{$mode objfpc}
{$apptype console}

uses
  Windows;

{ Returns 1 when the user pressed Save, 0 otherwise; the image stays ours. }
function retouch(parent: HWND; image: HGLOBAL; dialogRect: PRect; palettePos: PPoint): longint;
  stdcall; external 'KOVRTCH32.dll' index 2;

function pixelBytes(const info: TBitmapInfoHeader): SizeInt;
begin
  result := SizeInt((info.biWidth * 3 + 3) and not 3) * info.biHeight;
end;

function isSupported(const info: TBitmapInfoHeader): boolean;
begin
  result := (info.biSize = SizeOf(info)) and (info.biBitCount = 24) and (info.biCompression = BI_RGB)
    and (info.biWidth > 0) and (info.biWidth < 20000)
    and (info.biHeight > 0) and (info.biHeight < 20000);
end;

{ The bitmap without its file header is what the library takes; 0 when it cannot be read. }
function loadBitmapFile(const path: string): HGLOBAL;
var
  source: file;
  head: TBitmapFileHeader;
  info: TBitmapInfoHeader;
  packedBitmap: PByte;
  got: SizeInt;
begin
  result := 0;
  Assign(source, path);
  {$i-}
  Reset(source, 1);
  if IOResult <> 0 then exit;
  BlockRead(source, head, SizeOf(head), got);
  if got = SizeOf(head) then BlockRead(source, info, SizeOf(info), got);
  if (got = SizeOf(info)) and isSupported(info) then
  begin
    result := GlobalAlloc(GMEM_MOVEABLE, SizeOf(info) + pixelBytes(info));
    packedBitmap := GlobalLock(result);
    got := 0;
    if packedBitmap <> nil then
    begin
      info.biClrUsed := 0;  { a colour table, only a hint in such a file, is left out }
      info.biClrImportant := 0;
      Move(info, packedBitmap^, SizeOf(info));
      Seek(source, head.bfOffBits);
      BlockRead(source, packedBitmap[SizeOf(info)], pixelBytes(info), got);
      GlobalUnlock(result);  { the library locks it itself }
    end;
    if (got <> pixelBytes(info)) and (result <> 0) then result := GlobalFree(result);
  end;
  Close(source);
  {$i+}
end;

function saveBitmapFile(const path: string; image: HGLOBAL): boolean;
var
  target: file;
  head: TBitmapFileHeader;
  info: PBitmapInfoHeader;
begin
  result := false;
  info := GlobalLock(image);
  if info = nil then exit;
  FillChar(head, SizeOf(head), 0);
  head.bfType := $4D42;  { 'BM' }
  head.bfOffBits := SizeOf(head) + SizeOf(info^);
  head.bfSize := head.bfOffBits + pixelBytes(info^);
  Assign(target, path);
  {$i-}
  Rewrite(target, 1);
  BlockWrite(target, head, SizeOf(head));
  BlockWrite(target, info^, SizeOf(info^) + pixelBytes(info^));
  Close(target);
  result := IOResult = 0;
  {$i+}
  GlobalUnlock(image);
end;

{ Where the editor goes on the screen, frame included: the largest place up to 1000 x 700 of the picture's proportions. }
function editorPlace(image: HGLOBAL): TRect;
var
  info: PBitmapInfoHeader;
  width, height: longint;
begin
  info := GlobalLock(image);
  width := 1000;
  height := MulDiv(width, info^.biHeight, info^.biWidth);
  if height > 700 then
  begin
    height := 700;
    width := MulDiv(height, info^.biWidth, info^.biHeight);
  end;
  GlobalUnlock(image);
  result.left := 140;
  result.top := 60;
  result.right := result.left + width + 2 * GetSystemMetrics(SM_CXFRAME);
  result.bottom := result.top + height + 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION);
end;

var
  window: HWND;
  image: HGLOBAL;
  dialog: TRect;
  palette: TPoint;
begin
  image := 0;
  if ParamCount = 1 then image := loadBitmapFile(ParamStr(1));
  if image = 0 then
  begin
    writeln(StdErr, 'Usage: host PHOTO.bmp (24 bits a pixel)');
    halt(2);
  end;
  window := CreateWindowExA(0, 'STATIC', 'Host', WS_OVERLAPPEDWINDOW or WS_VISIBLE, 0, 0, 1200, 800, 0, 0, 0, nil);
  dialog := editorPlace(image);
  palette.x := 20;
  palette.y := 60;
  ExitCode := 1;
  if (retouch(window, image, @dialog, @palette) = 1) and saveBitmapFile('retouched.bmp', image) then
  begin
    writeln('Saved: retouched.bmp');
    ExitCode := 0;
  end
  else
    writeln('Nothing saved.');
  DestroyWindow(window);
  GlobalFree(image);
end.
