#include "Scene.h"
#include "SceneRenderer.h"
#include "ToolError.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

using namespace LmTextTool;

// Any bytes as a scene file: a ToolError, or a render when the scene is small enough to be quick.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::string path = "/tmp/lm_fuzz_scene_" + std::to_string(getpid()) + ".json";
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return 0;
    std::fwrite(data, 1, size, f);
    std::fclose(f);
    try {
        Scene scene = Scene::load(path);
        if (scene.text.size() > 64 || !(scene.size > 0 && scene.size <= 96) || scene.width > 512 ||
            scene.height > 512 || scene.effects.size() > 4)
            return 0;
        SceneRenderer::render(scene);
    } catch (const ToolError&) {
    }
    return 0;
}
