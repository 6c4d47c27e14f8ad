// Pieces of an SVG document.
#pragma once

#include "alidade/vellumlib/draw_properties.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Cli {

/// Pixels from the picture's upper left corner.
struct TPixel {
    double m_dX = 0.0;
    double m_dY = 0.0;
};

/// A rectangle of the picture.
struct TBox {
    double m_dLeft = 0.0;
    double m_dTop = 0.0;
    double m_dRight = 0.0;
    double m_dBottom = 0.0;

    [[nodiscard]] double GetWidth() const { return m_dRight - m_dLeft; }
    [[nodiscard]] double GetHeight() const { return m_dBottom - m_dTop; }
};

/// Which end of a text stands at its place.
enum class EAnchor { Start, Middle, End };

/// Text for an element or an attribute: markup is escaped, line ends and tabs are blanks, other control characters and
/// code points that XML refuses are left out, and bytes that aren't UTF-8 are U+FFFD.
std::string EscapeXml(std::string_view text);

/// A colour as #rrggbb.
std::string ColorToSvg(TIEColor color);

/// Appends pixels with at most two decimals. A value that isn't finite, or is far off any picture, is 0.
void AppendPixels(std::string& out, double dValue);

/// Appends `<text>` with that class, which the style of the document must know.
void AppendText(std::string& out, TPixel at, std::string_view strClass, EAnchor eAnchor, std::string_view text);
/// Appends `<path>` of one straight from place to place.
void AppendLine(std::string& out, TPixel from, TPixel to, std::string_view strClass);
/// Appends `<rect>`.
void AppendBox(std::string& out, const TBox& box, std::string_view attributes);

/// About how wide a text comes out in a font of that size, both in pixels. Where the font isn't known, only about.
double EstimateWidth(std::string_view text, double dFontSize);
/// The text if it fits that width, else its beginning with an ellipsis.
std::string FitWidth(std::string_view text, double dFontSize, double dWidth);

} // namespace Cli
