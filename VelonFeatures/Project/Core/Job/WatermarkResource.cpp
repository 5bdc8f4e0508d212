// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/WatermarkResource.h"

#include <charconv>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/Job/ShortText.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PostScriptInjectionSite.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "VelonFeatures/Project/Core/ZUBWatermark.h"

namespace {

// The resource is the head, one of the two in the middle, and the tail.
constexpr char kHeadFormat[] =
    "%%%%ZUB Begin Watermark resource \n"
    " globaldict /landscapeDoc %s put \n"
    " globaldict /invLandscapeDoc %s put \n"
    " userdict /ZUBWaterMark \n"
    " { \n"
    " 20 dict begin \n"
    " /%s findfont /Encoding get StandardEncoding ne \n"
    " { /Font /%s def } \n"
    " { \n"
    " currentglobal true setglobal ISOLatin1Encoding dup length array copy \n"
    " /ISOLatin1EncodingCopy exch def setglobal \n"
    " ISOLatin1EncodingCopy 128 /Euro put \n"
    " /%s findfont dup length dict begin \n"
    " {1 index /FID ne {def} {pop pop} ifelse} forall \n";
constexpr char kOwnEncodingFormat[] =
    "                                                    end                                 "
    "  \n"
    " /Font /%s           def \n";
constexpr char kLatinFormat[] =
    " /Encoding ISOLatin1EncodingCopy def currentdict \n"
    " end /%s-ISOLatin1 exch definefont pop \n"
    " /Font /%s-ISOLatin1 def \n";
constexpr char kTailFormat[] =
    " } ifelse \n"
    " /Watermark <%s> def \n"
    " /FontSize %d def \n"
    " /WaterMarkColor {%s %s %s setrgbcolor} bind def \n"
    " /landscapeDoc %s def \n"
    " /invLandscapeDoc %s def \n"
    " /Angle %s def \n"
    " landscapeDoc { /Angle Angle 90 add def } if \n"
    " invLandscapeDoc { /Angle Angle -90 add def } if \n"
    " /XOffset %s def \n"
    " /YOffset %s def \n"
    " gsave \n"
    " userdict /VelonKTdict known \n"
    " { \n"
    " globaldict /AdobeInitMatrix get exec \n"
    " VelonKTdict /GetPgNum get exec VelonKTdict /VelonBeginPage get exec \n"
    " userdict /origSizeW get 2 div XOffset add userdict /origSizeH get 2 div YOffset add "
    "translate \n"
    " } \n"
    " { \n"
    " initmatrix clippath pathbbox \n"
    " /MaxY exch def /MaxX exch def /MinY exch def /MinX exch def \n"
    " MaxX 2 div MinX 2 div add XOffset add \n"
    " MaxY 2 div MinY 2 div add YOffset add translate } ifelse \n"
    " Angle rotate Font findfont FontSize scalefont setfont WaterMarkColor \n"
    " Watermark stringwidth pop 2 div neg FontSize 3 div neg moveto \n"
    " Watermark show \n"
    " grestore \n"
    " end \n"
    " } bind put \n"
    " globaldict /pageCount 0 put \n"
    " globaldict /waterMarkAllPages %s put \n"
    " userdict /ZUBDRVRMACOriginalshowpage /showpage load put \n"
    " userdict /showpage \n"
    " { \n"
    " globaldict /pageCount globaldict /pageCount get 1 add put \n"
    " globaldict /pageCount get 1 eq \n"
    " globaldict /waterMarkAllPages get or \n"
    " { \n"
    " userdict /ZUBWaterMark get exec \n"
    " } if \n"
    " userdict /ZUBDRVRMACOriginalshowpage get exec \n"
    " } bind put \n"
    " %%%%ZUB End Watermark resource \n";

constexpr double kColourRange = 255.0;
constexpr double kAnglesPerDegree = 10.0;

// What the page's orientation does to a mark: it goes with the page as the reader holds it.
struct Placement {
    std::int64_t x;
    std::int64_t y;
    char const* landscape;
    char const* inverseLandscape;
};

Placement PlacementOf(ZUBWatermark const& mark, std::int32_t orientation) {
    std::int64_t const x = mark.XOffset();
    std::int64_t const y = mark.YOffset();
    switch (orientation) {
        case 2:
            return {-y, x, "true", "false"};
        case 4:
            return {y, -x, "false", "true"};
        default:
            return {x, y, "false", "false"};
    }
}

// With a point, whatever the locale.
std::string Decimal(double number, int decimals) {
    char text[32];
    auto const end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, decimals);
    return std::string(text, end.ptr);
}

}  // namespace

std::string WatermarkResource(ZUBWatermark& mark, std::int32_t orientation,
                              char const* languageVersion) {
    Placement const at = PlacementOf(mark, orientation);
    char const* const font = mark.Font().c_str();
    auto const colour = [](std::int32_t value) { return Decimal(value / kColourRange, 2); };
    return FormattedText(kHeadFormat, at.landscape, at.inverseLandscape, font, font, font) +
           (HasFontsOfItsOwn(languageVersion) ? FormattedText(kOwnEncodingFormat, font)
                                              : FormattedText(kLatinFormat, font, font)) +
           FormattedText(kTailFormat, mark.GetWMTextInHex(languageVersion), mark.FontSize(),
                         colour(mark.Red()).c_str(), colour(mark.Green()).c_str(),
                         colour(mark.Blue()).c_str(), at.landscape, at.inverseLandscape,
                         Decimal(mark.Angle() / kAnglesPerDegree, 1).c_str(),
                         std::to_string(at.x).c_str(), std::to_string(at.y).c_str(),
                         mark.FirstPageOnly() ? "false" : "true");
}

void AddWatermarkResource(ZUBJobTicket& ticket, std::string const& resource) {
    if (resource.size() < kWatermarkResourceSize) {
        ticket.AddText(kFeatureSite, resource.c_str());
    }
}

void AddSelectedWatermark(ZUBJobTicket& ticket, PDEData& data, std::int32_t orientation) {
    WatermarkList& list = data.Watermarks();
    std::int32_t const number = list.SelectedIndex();
    if (number < 0) {
        return;
    }
    ZUBWatermark* const mark = list.Selected();
    if (std::string const told =
            mark == nullptr ? data.WhyNoWatermark(number) : list.DoubtsOf(number);
        !told.empty()) {
        list.WarnOnce(told);
    }
    if (mark != nullptr && CanBePrinted(*mark)) {
        ZUBPPD const* const ppd = data.GetPPD();
        char const* const language = ppd == nullptr ? nullptr : ppd->LanguageVersion();
        AddWatermarkResource(ticket, WatermarkResource(*mark, orientation, language));
    }
}
