#pragma once

#include <cstddef>

#include "apps/render/Picture.h"

namespace vantorix::apps::cli {

/// A grid of equal cells for several pictures, row by row from the upper left.
class ContactSheet {
public:
    /// As square a grid as @p count cells need, in a transparent picture of the given size.
    ContactSheet(int width, int height, std::size_t count);

    /// At least 1.
    int getCellWidth() const;
    int getCellHeight() const;

    void add(const render::Picture& picture, std::size_t cell);

    /// Hands out the sheet, once.
    render::Picture take();

private:
    render::Picture sheet_;
    int columns_ = 1;
    int rows_ = 1;
};

}  // namespace vantorix::apps::cli
