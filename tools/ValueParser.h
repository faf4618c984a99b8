#ifndef LMTEXT_VALUEPARSER_H
#define LMTEXT_VALUEPARSER_H

#include <string>
#include <vector>

namespace LmTextTool {

// One colour stop as the user wrote it: colour, opacity 0..1, position 0..1 along the ramp.
struct StopValue {
    unsigned colour = 0xFF000000u;
    double opacity = 1.0;
    double position = 0.0;
};

// Parsing of the values a user types. Every function names the argument (`what`) in the
// message of the ToolError (exit 2) it throws for a malformed value.
class ValueParser {
public:
    // A finite decimal number ("12", "-3.5", "1e2"); nan and inf are refused.
    static double parseNumber(const std::string& text, const std::string& what);
    // A whole number that fits in 32 bits.
    static int parseInt(const std::string& text, const std::string& what);
    // "#RGB", "#RRGGBB" (opaque), "#AARRGGBB" or one of colourNames(); gives ARGB.
    static unsigned parseColour(const std::string& text, const std::string& what);
    static const std::vector<std::string>& colourNames();
    // "COLOUR[@POSITION][:OPACITY]" joined by '+'. Stops without a position are spread
    // evenly over 0..1 in the order given.
    static std::vector<StopValue> parseStops(const std::string& text, const std::string& what);
    // "#AARRGGBB", the form the tool prints colours in.
    static std::string formatColour(unsigned colour);
    // Six significant digits, enough for messages about user-typed values.
    static std::string formatNumber(double value);
};

} // namespace LmTextTool

#endif
