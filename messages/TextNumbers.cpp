#include "messages/TextNumbers.h"

#include <QHash>

namespace quellbox {

size_t TextNumbers::NumberOf(QStringView text) {
    const auto hash = static_cast<quint32>(qHash(text, QHashSeed::globalSeed()));
    Slot& slot = SlotOf(hash, text);
    if (slot.next != 0) {
        return slot.next - 1;
    }
    const size_t number = Count();
    slot = {hash, static_cast<quint32>(number + 1)};
    characters_.append(text.utf16(), static_cast<size_t>(text.size()));
    begins_.push_back(characters_.size());
    if (2 * Count() > slots_.size()) {
        Grow();
    }
    return number;
}

QStringView TextNumbers::Text(size_t number) const {
    const size_t begin = begins_[number];
    return QStringView(characters_.data() + begin, static_cast<qsizetype>(begins_[number + 1] - begin));
}

/// The slot of a text, or the free one where it belongs.
TextNumbers::Slot& TextNumbers::SlotOf(quint32 hash, QStringView text) {
    size_t at = hash & (slots_.size() - 1);
    while (slots_[at].next != 0 && (slots_[at].hash != hash || Text(slots_[at].next - 1) != text)) {
        at = (at + 1) & (slots_.size() - 1);
    }
    return slots_[at];
}

void TextNumbers::Grow() {
    std::vector<Slot> old(2 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.next != 0) {
            SlotOf(slot.hash, Text(slot.next - 1)) = slot;
        }
    }
}

} // namespace quellbox
