#include "apps/render/OffscreenContext.h"

#include <string>

#include <SDL.h>

#include "apps/render/RenderError.h"

namespace vantorix::apps::render {
namespace {

constexpr int windowSide = 16;  // Nothing is ever drawn into the window itself.

void requestCore(int major, int minor) {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, major);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, minor);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
}

}  // namespace

OffscreenContext::OffscreenContext() {
    // Overrides the environment as well: a picture never opens a window on somebody's screen.
    SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, "offscreen", SDL_HINT_OVERRIDE);
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetMainReady();
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        throw RenderError(std::string("no video driver: ") + SDL_GetError());
    }
    createContext();
    if (context_) return;
    const std::string reason = SDL_GetError();
    release();
    throw RenderError("no OpenGL context: " + reason);
}

OffscreenContext::~OffscreenContext() { release(); }

void OffscreenContext::createContext() {
    requestCore(4, 5);
    window_ = SDL_CreateWindow("vantorix", 0, 0, windowSide, windowSide,
                               SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    if (!window_) return;
    context_ = SDL_GL_CreateContext(window_);
    if (context_) return;
    requestCore(3, 3);
    context_ = SDL_GL_CreateContext(window_);
}

void OffscreenContext::release() {
    if (context_) SDL_GL_DeleteContext(context_);
    if (window_) SDL_DestroyWindow(window_);
    SDL_Quit();
}

}  // namespace vantorix::apps::render
