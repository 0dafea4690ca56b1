#include "apps/vantorix/ContactSheet.h"

#include <algorithm>
#include <utility>

namespace vantorix::apps::cli {

ContactSheet::ContactSheet(int width, int height, std::size_t count) : sheet_(width, height) {
    const int cells = static_cast<int>(std::clamp<std::size_t>(count, 1, 1000000));
    while (columns_ * columns_ < cells) ++columns_;
    rows_ = (cells + columns_ - 1) / columns_;
}

int ContactSheet::getCellWidth() const { return std::max(sheet_.width / columns_, 1); }

int ContactSheet::getCellHeight() const { return std::max(sheet_.height / rows_, 1); }

void ContactSheet::add(const render::Picture& picture, std::size_t cell) {
    const int column = static_cast<int>(cell) % columns_;
    const int row = static_cast<int>(cell) / columns_;
    render::paste(picture, column * getCellWidth(), sheet_.height - (row + 1) * getCellHeight(),
                  sheet_);
}

render::Picture ContactSheet::take() { return std::move(sheet_); }

}  // namespace vantorix::apps::cli
