#include "host/losses.h"

#include "host/codecs/tiff_file.h"

namespace {

void add(Losses* losses, bool lost, const wchar_t* name, bool severe)
{
    if (!lost) return;
    losses->names.push_back(name);
    losses->severe = losses->severe || severe;
}

bool keepsAll(const SourcePhoto& source, PhotoFormat format)
{
    if (format == PhotoFormat::Tiff) return source.kind == PhotoKind::Tiff && tiffKeepsItsKind(source.path.c_str());
    return (format == PhotoFormat::Jpeg && source.kind == PhotoKind::Jpeg) ||
           (format == PhotoFormat::Png && source.kind == PhotoKind::Png);
}

}  // namespace

Losses lossesOf(const SourcePhoto& source, PhotoFormat format)
{
    const PhotoFacts& facts = source.facts;
    const bool all = keepsAll(source, format);
    const bool multiPicture = source.kind == PhotoKind::Jpeg && facts.pages > 1;
    Losses losses;
    add(&losses, facts.animated, L"all pictures but the first", true);
    add(&losses, multiPicture, L"the further pictures in the file", true);
    if (all) {
        // The blocks of a turned CMYK photo that cannot be turned as they are become plain colours.
        return losses;
    }
    add(&losses, !multiPicture && !facts.animated && facts.pages > 1, L"the further pages", true);
    add(&losses, facts.alpha, L"the alpha channel (the photo lies on white)", true);
    add(&losses, facts.deep, L"more than 8 bits a channel", true);
    add(&losses, facts.inks, L"the CMYK colours", true);
    add(&losses, facts.palette, L"the table of colours", false);
    const bool noProfile = format == PhotoFormat::Bmp || facts.grey || facts.inks;
    add(&losses, !facts.profile.empty() && noProfile, L"the colour profile", false);
    const bool noCamera = format == PhotoFormat::Bmp || format == PhotoFormat::Tiff;
    add(&losses, !facts.exif.empty() && noCamera, L"the camera data", false);
    add(&losses, !facts.xmp.empty() && format == PhotoFormat::Bmp, L"the XMP data", false);
    return losses;
}

std::wstring inOneLine(const Losses& losses)
{
    std::wstring line;
    for (const std::wstring& name : losses.names)
        line += (line.empty() ? L"" : L", ") + name;
    return line;
}
