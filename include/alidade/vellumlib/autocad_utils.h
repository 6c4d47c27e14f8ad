// Colours, line types and line weights of CAD drawings, and ours.
#pragma once

#include "alidade/platform/api.h"
#include "alidade/platform/messages.h"
#include "alidade/vellumlib/draw_properties.h"

#include <string_view>

/// Conversions without state; any thread may use one.
class ALIDADE_API CIEAutoCADUtils {
public:
    static constexpr int kColors = 256;
    static constexpr int kForeground = 7; ///< drawn white on black and black on white

    /// The colour of an index, 0 to 255; any other index gives that of kForeground. 0, which drawings use for "as the
    /// block", is black. 1 to 9 are the pure colours, white and two greys; 10 to 249 go round the colour circle in
    /// steps of ten for each 15 degrees, at 100, 65, 50, 30 and 15 per cent of brightness, the odd ones at half the
    /// saturation; 250 to 255 are greys from 20 per cent to white.
    [[nodiscard]] TIEColor Convert256ToRGB(int nIndex) const;
    /// The index, 1 to 255, whose colour lies nearest in red, green and blue; the lowest of equal ones. Black, which no
    /// index has, gives kForeground, with which drawings draw what shall stand out from any sheet.
    [[nodiscard]] int ConvertRGBTo256(TIEColor color) const;

    /// Width in pixels, at least 1, of a line weight of a drawing in hundredths of a millimetre, at 96 pixels to the
    /// inch; 0 for a weight of 0 or less. `hWnd` stands for the host's window; ours have no screen of their own, so it
    /// changes nothing.
    [[nodiscard]] int ConvertLineWeightFromMMtoPixels(HWND hWnd, double dWeight) const;
    /// The line weight, in hundredths of a millimetre out of those that drawings know (0 to 211), that is nearest to a
    /// width in pixels.
    [[nodiscard]] int ConvertLineWeightFromPixelsToMM(int nPixels) const;

    /// The dash style that comes nearest to a line type of a drawing, told from its name in any case: the names that
    /// CIEDrawLineProperties gives, those of the common line type libraries (HIDDEN, CENTER, PHANTOM, DIVIDE, BORDER,
    /// ACAD_ISO...), and names that say DASH or DOT. BYLAYER and BYBLOCK are ByLayer; any other is Solid.
    [[nodiscard]] CIEDrawLineProperties::EDashStyleType ConvertCustomLineTypeToPredefined(std::string_view name) const;
};
