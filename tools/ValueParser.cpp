#include "ValueParser.h"

#include "ToolError.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace LmTextTool {

namespace {

const std::vector<std::pair<std::string, unsigned>>& namedColours()
{
    static const std::vector<std::pair<std::string, unsigned>> names = {
        {"black", 0xFF000000u},   {"white", 0xFFFFFFFFu}, {"red", 0xFFFF0000u},
        {"green", 0xFF00FF00u},   {"blue", 0xFF0000FFu},  {"yellow", 0xFFFFFF00u},
        {"cyan", 0xFF00FFFFu},    {"magenta", 0xFFFF00FFu}, {"orange", 0xFFFFA500u},
        {"gold", 0xFFFFD700u},    {"gray", 0xFF808080u},  {"grey", 0xFF808080u},
        {"transparent", 0x00000000u},
    };
    return names;
}

std::string lower(std::string s)
{
    for (char& c : s) c = (char)std::tolower((unsigned char)c);
    return s;
}

std::string trim(const std::string& s)
{
    size_t b = s.find_first_not_of(" \t");
    if (b == std::string::npos) return "";
    size_t e = s.find_last_not_of(" \t");
    return s.substr(b, e - b + 1);
}

} // namespace

double ValueParser::parseNumber(const std::string& text, const std::string& what)
{
    std::string t = trim(text);
    const char* begin = t.c_str();
    char* end = nullptr;
    errno = 0;
    double v = std::strtod(begin, &end);
    if (t.empty() || end != begin + t.size() || !std::isfinite(v) || errno == ERANGE)
        throw ToolError::usage(what + ": '" + text + "' is not a number");
    return v;
}

int ValueParser::parseInt(const std::string& text, const std::string& what)
{
    std::string t = trim(text);
    const char* begin = t.c_str();
    char* end = nullptr;
    errno = 0;
    long v = std::strtol(begin, &end, 10);
    if (t.empty() || end != begin + t.size() || errno == ERANGE || v < INT_MIN || v > INT_MAX)
        throw ToolError::usage(what + ": '" + text + "' is not a whole number");
    return (int)v;
}

unsigned ValueParser::parseColour(const std::string& text, const std::string& what)
{
    std::string t = lower(trim(text));
    for (const auto& named : namedColours())
        if (named.first == t) return named.second;

    std::string hex;
    if (t.size() > 1 && t[0] == '#') hex = t.substr(1);
    else if (t.size() > 2 && t[0] == '0' && t[1] == 'x') hex = t.substr(2);
    bool digits = !hex.empty();
    for (char c : hex) digits = digits && std::isxdigit((unsigned char)c);
    if (digits && (hex.size() == 3 || hex.size() == 6 || hex.size() == 8)) {
        if (hex.size() == 3) hex = std::string{hex[0], hex[0], hex[1], hex[1], hex[2], hex[2]};
        unsigned v = (unsigned)std::strtoul(hex.c_str(), nullptr, 16);
        return hex.size() == 8 ? v : (v | 0xFF000000u);
    }
    throw ToolError::usage(what + ": '" + text +
                           "' is not a colour (use #RGB, #RRGGBB, #AARRGGBB or a name such as black, white, red)");
}

const std::vector<std::string>& ValueParser::colourNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> n;
        for (const auto& named : namedColours()) n.push_back(named.first);
        return n;
    }();
    return names;
}

std::vector<StopValue> ValueParser::parseStops(const std::string& text, const std::string& what)
{
    std::vector<StopValue> stops;
    std::vector<bool> placed;
    std::string t = trim(text);
    if (t.empty() || t == "none") return stops;
    size_t from = 0;
    while (from <= t.size()) {
        size_t plus = t.find('+', from);
        std::string item = t.substr(from, plus == std::string::npos ? std::string::npos : plus - from);
        std::string label = what + " stop " + std::to_string(stops.size() + 1);
        StopValue stop;
        size_t colon = item.find(':');
        if (colon != std::string::npos) {
            stop.opacity = parseNumber(item.substr(colon + 1), label + " opacity");
            item = item.substr(0, colon);
        }
        size_t at = item.find('@');
        bool hasPosition = at != std::string::npos;
        if (hasPosition) {
            stop.position = parseNumber(item.substr(at + 1), label + " position");
            item = item.substr(0, at);
        }
        stop.colour = parseColour(item, label);
        stops.push_back(stop);
        placed.push_back(hasPosition);
        if (plus == std::string::npos) break;
        from = plus + 1;
    }
    for (size_t i = 0; i < stops.size(); ++i)
        if (!placed[i]) stops[i].position = stops.size() == 1 ? 0.0 : (double)i / (double)(stops.size() - 1);
    return stops;
}

std::string ValueParser::formatColour(unsigned colour)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%08X", colour);
    return buf;
}

std::string ValueParser::formatNumber(double value)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.6g", value);
    return buf;
}

} // namespace LmTextTool
