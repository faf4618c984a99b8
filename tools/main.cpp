// lmtext: renders text with a stack of effects into a PNG through the library's text object.
#include "EffectCatalog.h"
#include "Scene.h"
#include "SceneRenderer.h"
#include "Showcase.h"
#include "ToolError.h"
#include "ValueParser.h"

#include "LmVersion.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

using namespace LmTextTool;

namespace {

// The values of the render subcommand as typed, applied over the scene file's.
struct RenderArgs {
    std::string scenePath;
    std::string output;
    bool printKey = false;
    std::map<std::string, std::string> scalars;  // option name -> text
    bool bold = false, italic = false, wrap = false, clipToAdvance = false;
    std::map<std::string, std::vector<std::string>> effectArgs;
};

// "\n" and "\\" typed on a command line stand for a newline and a backslash.
std::string unescape(const std::string& s)
{
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 1 < s.size() && (s[i + 1] == 'n' || s[i + 1] == '\\')) {
            out += s[i + 1] == 'n' ? '\n' : '\\';
            ++i;
        } else {
            out += s[i];
        }
    }
    return out;
}

std::string optionNames(const CLI::App& app)
{
    std::string out;
    for (const CLI::Option* opt : app.get_options())
        for (const std::string& name : opt->get_lnames()) out += (out.empty() ? "--" : ", --") + name;
    return out;
}

void applyScalars(Scene& scene, const std::map<std::string, std::string>& s)
{
    auto has = [&](const char* k) { return s.count(k) != 0; };
    if (has("text")) scene.text = unescape(s.at("text"));
    if (has("font")) scene.font = s.at("font");
    if (has("size")) scene.size = ValueParser::parseNumber(s.at("size"), "--size");
    if (has("color")) scene.color = ValueParser::parseColour(s.at("color"), "--color");
    if (has("width")) scene.width = ValueParser::parseInt(s.at("width"), "--width");
    if (has("height")) scene.height = ValueParser::parseInt(s.at("height"), "--height");
    if (has("padding")) Scene::parsePadding(s.at("padding"), "--padding", scene.padding);
    if (has("gravity")) scene.gravity = Scene::parseGravity(s.at("gravity"), "--gravity");
    if (has("align")) scene.align = Scene::parseAlign(s.at("align"), "--align");
    if (has("line-spacing")) scene.lineSpacing = ValueParser::parseNumber(s.at("line-spacing"), "--line-spacing");
    if (has("max-lines")) scene.maxLines = ValueParser::parseInt(s.at("max-lines"), "--max-lines");
    if (has("background")) scene.background = ValueParser::parseColour(s.at("background"), "--background");
    if (has("line-background")) {
        scene.lineBackground = ValueParser::parseColour(s.at("line-background"), "--line-background");
        scene.lineBackgroundSet = true;
    }
}

int runRender(const CLI::App& sub, const RenderArgs& args)
{
    Scene scene = args.scenePath.empty() ? Scene() : Scene::load(args.scenePath);
    applyScalars(scene, args.scalars);
    scene.bold = scene.bold || args.bold;
    scene.italic = scene.italic || args.italic;
    scene.wrap = scene.wrap || args.wrap;
    scene.clipToAdvance = scene.clipToAdvance || args.clipToAdvance;

    // Effects from the command line follow the scene's, in the order they were typed.
    std::map<std::string, size_t> used;
    for (const CLI::Option* opt : sub.parse_order()) {
        std::string name = opt->get_name(false, true).substr(2);
        auto it = args.effectArgs.find(name);
        if (it == args.effectArgs.end()) continue;
        size_t k = used[name]++;
        if (k >= it->second.size()) continue;
        EffectRequest request(*EffectCatalog::find(name), "--" + name);
        request.assign(it->second[k]);
        scene.effects.push_back(request);
    }
    if (scene.text.empty()) throw ToolError::usage("no text to render: give --text or a scene with \"text\"");
    if (args.output.empty() && !args.printKey) throw ToolError::usage("no output: give -o FILE.png (or --key)");

    // Said before rendering, so that the notes come also when the render fails.
    for (const EffectRequest& request : scene.effects)
        for (const std::string& note : request.clampNotes()) std::cerr << "lmtext: " << note << "\n";
    SceneRenderer::Result result = SceneRenderer::render(scene);
    if (!result.fontNote.empty()) std::cerr << "lmtext: " << result.fontNote << "\n";
    if (args.printKey) std::cout << result.keyHex << "\n";
    if (!args.output.empty()) {
        result.image.writePng(args.output);
        std::cout << "wrote " << args.output << " (" << result.image.width() << "x" << result.image.height() << ")\n";
    }
    return 0;
}

int runShowcase(const Showcase::Options& options, const std::string& output)
{
    std::vector<std::string> missing;
    RgbaImage image = Showcase::render(options, nullptr, &missing);
    image.writePng(output);
    if (!missing.empty()) {
        std::string names;
        for (const std::string& m : missing) names += (names.empty() ? "" : ", ") + m;
        std::cerr << "lmtext: not in this build, left out: " << names << "\n";
    }
    std::cout << "wrote " << output << " (" << image.width() << "x" << image.height() << ")\n";
    return 0;
}

// The render subcommand, its values kept in `args`.
CLI::App* addRenderCommand(CLI::App& app, RenderArgs& args)
{
    CLI::App* render = app.add_subcommand("render", "render text (from options or a JSON scene) into a PNG");
    render->add_option("scene", args.scenePath, "JSON scene file; options given here override it");
    // A repeated option takes its last value, as most tools do.
    render->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    render->add_option("-o,--output", args.output, "PNG file to write");
    render->add_flag("--key", args.printKey, "print the effect stack's key in hex");
    struct Scalar {
        const char* flags;
        const char* name;
        const char* help;
    };
    const Scalar scalars[] = {
        {"-t,--text", "text", "text to render; \\n starts a new line"},
        {"-f,--font", "font", "font file, or a family name looked up through fontconfig (default DejaVu Sans)"},
        {"-s,--size", "size", "text size in pixels (default 48)"},
        {"-c,--color", "color", "text colour, #RRGGBB or #AARRGGBB (default #000000)"},
        {"-W,--width", "width", "view width in pixels (default: fit the text)"},
        {"-H,--height", "height", "view height in pixels (default: fit the text)"},
        {"-p,--padding", "padding", "N, H,V or LEFT,TOP,RIGHT,BOTTOM pixels (default 0)"},
        {"-g,--gravity", "gravity", "left|right|center_horizontal with top|bottom|center_vertical|fill_vertical, "
                                    "or center (default left|top)"},
        {"--align", "align", "line alignment: left, center, right (default: from the gravity)"},
        {"--line-spacing", "line-spacing", "multiple of the font's line height (default 1)"},
        {"--max-lines", "max-lines", "draw at most this many lines"},
        {"--background", "background", "colour painted behind the render (default transparent)"},
        {"--line-background", "line-background", "colour the library paints behind each line"},
    };
    for (const Scalar& s : scalars) {
        std::string name = s.name;
        auto keep = [&args, name](const std::string& v) { args.scalars[name] = v; };
        render->add_option_function<std::string>(s.flags, keep, s.help);
    }
    render->add_flag("--bold", args.bold, "fake bold");
    render->add_flag("--italic", args.italic, "italic (synthetic when the font has none)");
    render->add_flag("--wrap", args.wrap, "wrap lines to the view width (needs --width)");
    render->add_flag("--clip-to-advance", args.clipToAdvance,
                     "cut each line's ink to its advance and shift ink left of the pen in, as on Android");
    for (const EffectInfo& e : EffectCatalog::all()) {
        render->add_option("--" + e.name, args.effectArgs[e.name], e.summary + " (KEY=VALUE,...; see below)")
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->type_name("PARAMS");
    }
    render->footer(EffectCatalog::helpText() +
                   "\nScene files are JSON objects with the keys " + Scene::keyNames() +
                   ";\n\"effects\" is a list of objects such as {\"type\": \"stroke\", \"size\": 4, "
                   "\"position\": \"outside\"},\nstops a list of {\"color\", \"position\", \"opacity\"}.\n");
    return render;
}

CLI::App* addShowcaseCommand(CLI::App& app, Showcase::Options& options, std::string& output)
{
    CLI::App* show = app.add_subcommand("showcase", "one image with every effect kind this build has");
    show->add_option("-o,--output", output, "PNG file to write (default showcase.png)");
    show->add_option("-f,--font", options.font, "font file or family name (default DejaVu Sans)");
    show->add_option("-t,--text", options.text, "sample text (default Effect)");
    show->add_option("-s,--size", options.size, "text size in pixels (default 64)");
    show->add_option("--columns", options.columns, "cells per row (default 3)");
    return show;
}

// CLI11 would only say that a command is required; name the valid ones instead. False after
// saying so.
bool knownCommand(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "lmtext: give a command: render or showcase (see lmtext --help)\n";
        return false;
    }
    std::string first = argv[1];
    bool help = first == "-h" || first == "--help";
    if (first == "--version") {
        std::cout << "lmtext " << LMEFFECT_VERSION_STRING << "\n";
        std::exit(0);
    }
    if (!help && first != "render" && first != "showcase") {
        std::cerr << "lmtext: unknown " << (first[0] == '-' ? "option" : "command") << " '" << first
                  << "'; valid commands: render, showcase (and --help)\n";
        return false;
    }
    return true;
}

// A parse error with the valid options (or commands) where CLI11 names only the bad one.
int reportParseError(const CLI::ParseError& e, const CLI::App* render, const CLI::App* show)
{
    std::string valid;
    const CLI::App* context = render->parsed() ? render : show->parsed() ? show : nullptr;
    if (dynamic_cast<const CLI::ExtrasError*>(&e))
        valid = context ? "; valid options: " + optionNames(*context) : "; valid commands: render, showcase";
    std::cerr << "lmtext: " << e.what() << valid << "\n(run 'lmtext " << (context ? context->get_name() + " " : "")
              << "--help' for details)\n";
    return ToolError::kUsage;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"lmtext: render text with effects into a PNG"};
    app.require_subcommand(1);
    app.footer("Examples:\n"
               "  lmtext showcase -o showcase.png\n"
               "  lmtext render -t Hello --stroke size=4,color=#000000,position=outside -o hello.png\n"
               "  lmtext render scene.json --key -o scene.png\n"
               "  lmtext --version\n"
               "Exit codes: 0 done, 1 a file or render failed, 2 bad command line or scene.");
    RenderArgs args;
    CLI::App* render = addRenderCommand(app, args);
    Showcase::Options showcase;
    std::string showcaseOutput = "showcase.png";
    CLI::App* show = addShowcaseCommand(app, showcase, showcaseOutput);

    if (!knownCommand(argc, argv)) return ToolError::kUsage;
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return reportParseError(e, render, show);
    }

    try {
        if (render->parsed()) return runRender(*render, args);
        if (showcase.size <= 0 || showcase.size > 400) throw ToolError::usage("--size: must be within 1..400");
        return runShowcase(showcase, showcaseOutput);
    } catch (const ToolError& e) {
        std::cerr << "lmtext: " << e.what() << "\n";
        return e.exitCode();
    } catch (const std::exception& e) {
        std::cerr << "lmtext: " << e.what() << "\n";
        return ToolError::kFailure;
    }
}
