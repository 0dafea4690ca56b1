#pragma once

struct SDL_Window;

namespace vantorix::apps::render {

/// An OpenGL context (core 4.5, else core 3.3) behind a hidden window that needs no display.
/// One at a time, used by the thread that made it.
class OffscreenContext {
public:
    /// @throws RenderError when SDL cannot make one, for example because a library is missing.
    OffscreenContext();
    ~OffscreenContext();

    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

private:
    void createContext();
    void release();

    SDL_Window* window_ = nullptr;
    void* context_ = nullptr;
};

}  // namespace vantorix::apps::render
