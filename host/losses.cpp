#include "host/losses.h"

static void add(Losses* losses, bool lost, TextId name, bool severe)
{
    if (!lost) return;
    losses->names.push_back(name);
    losses->severe = losses->severe || severe;
}

// A grey TIFF file that gets colours becomes a plain one.
static bool keepsTiff(const PhotoFacts& facts, const PhotoFacts* written)
{
    const bool missing =
        written && (written->pages < facts.pages || (facts.deep && !written->deep) || (facts.alpha && !written->alpha));
    if (missing) return false;  // the photo's file was gone
    if (!facts.grey || !(facts.pages > 1 || facts.deep || facts.alpha)) return facts.inPlace;
    return facts.inPlace && written && written->grey;
}

static bool keepsAll(const SourcePhoto& source, PhotoFormat format, const PhotoFacts* written)
{
    if (format == PhotoFormat::Tiff) return source.kind == PhotoKind::Tiff && keepsTiff(source.facts, written);
    // Inks that cannot be turned as blocks become plain colours.
    const PhotoFacts& facts = source.facts;
    const bool turnsInks = facts.inks && facts.uneven && facts.orientation != 1;
    return (format == PhotoFormat::Jpeg && source.kind == PhotoKind::Jpeg && !turnsInks) ||
           (format == PhotoFormat::Bmp && source.kind == PhotoKind::Bmp && facts.inPlace) ||
           (format == PhotoFormat::Png && source.kind == PhotoKind::Png);
}

Losses lossesOf(const SourcePhoto& source, PhotoFormat format, const PhotoFacts* written)
{
    const PhotoFacts& facts = source.facts;
    const bool all = keepsAll(source, format, written);
    const bool multiPicture = source.kind == PhotoKind::Jpeg && facts.pages > 1;
    Losses losses;
    add(&losses, facts.animated, TEXT_LOSS_FRAMES, true);
    add(&losses, multiPicture, TEXT_LOSS_PICTURES, true);
    if (all) return losses;
    add(&losses, !multiPicture && !facts.animated && facts.pages > 1, TEXT_LOSS_PAGES, true);
    add(&losses, facts.alpha, TEXT_LOSS_ALPHA, true);
    add(&losses, facts.deep, TEXT_LOSS_DEPTH, true);
    add(&losses, facts.inks, TEXT_LOSS_INKS, true);
    add(&losses, facts.palette, TEXT_LOSS_PALETTE, false);
    const bool noProfile = format == PhotoFormat::Bmp || facts.grey || facts.inks;
    add(&losses, !facts.profile.empty() && noProfile, TEXT_LOSS_PROFILE, false);
    const bool noCamera = format == PhotoFormat::Bmp || format == PhotoFormat::Tiff;
    add(&losses, facts.camera || (!facts.exif.empty() && noCamera), TEXT_LOSS_CAMERA, false);
    const bool sameKind = (format == PhotoFormat::Jpeg && source.kind == PhotoKind::Jpeg) ||
                          (format == PhotoFormat::Tiff && source.kind == PhotoKind::Tiff);
    add(&losses, facts.notes && !sameKind, TEXT_LOSS_NOTES, false);
    add(&losses, !facts.xmp.empty() && format == PhotoFormat::Bmp, TEXT_LOSS_XMP, false);
    return losses;
}
