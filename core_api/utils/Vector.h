#pragma once

#include <cstddef>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace vantorix::core::utils {

/// N components in a dynamic array: N of them, or none after default construction.
template <class T, unsigned int N>
class Vector {
public:
    /// No components.
    Vector() = default;

    /// Copies N components; a null pointer gives none.
    explicit Vector(const T* components) {
        if (components) components_.assign(components, components + N);
    }

    /// One argument for each component: Vector<float, 3>(x, y, z).
    template <class... Components,
              class = std::enable_if_t<(N > 1) && sizeof...(Components) == N &&
                                       (std::is_convertible<Components, T>::value && ...)>>
    Vector(Components... components) : components_{static_cast<T>(components)...} {}

    std::size_t size() const { return components_.size(); }

    /// @throws std::out_of_range unless @p index is below size().
    const T& operator[](std::size_t index) const {
        requireIndex(index);
        return components_[index];
    }
    T& operator[](std::size_t index) {
        requireIndex(index);
        return components_[index];
    }

    friend bool operator==(const Vector& left, const Vector& right) {
        return left.components_ == right.components_;
    }
    friend bool operator!=(const Vector& left, const Vector& right) { return !(left == right); }

private:
    void requireIndex(std::size_t index) const {
        if (index >= components_.size()) throw std::out_of_range("invalid vector<T> subscript");
    }

    std::vector<T> components_;
};

}  // namespace vantorix::core::utils
