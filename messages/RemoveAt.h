#pragma once

#include <utility>
#include <vector>

namespace quellbox {

/// Removes the elements at ascending places in one go.
template <class Element>
void RemoveAt(std::vector<Element>& elements, const std::vector<int>& places) {
    if (places.empty()) {
        return;
    }
    auto kept = static_cast<size_t>(places.front());
    auto removed = places.begin();
    for (size_t place = kept; place < elements.size(); ++place) {
        if (removed != places.end() && static_cast<size_t>(*removed) == place) {
            ++removed;
            continue;
        }
        elements[kept++] = std::move(elements[place]);
    }
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(kept), elements.end());
}

} // namespace quellbox
