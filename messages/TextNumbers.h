#pragma once

#include <QString>

#include <string>
#include <vector>

namespace quellbox {

/// Numbers the different texts that are brought to it, from 0 on. The texts lie in one piece of memory: with a hash
/// table of QString, most of the time of counting goes into finding memory for each of them.
class TextNumbers {
public:
    /// The number of a text: that which it got before, else the next one.
    size_t NumberOf(QStringView text);

    /// The text of a number. Lent until the next call of NumberOf().
    QStringView Text(size_t number) const;

    /// How many different texts there are.
    size_t Count() const { return begins_.size() - 1; }

private:
    /// A place of the hash table.
    struct Slot {
        quint32 hash = 0;
        quint32 next = 0; ///< the number after that of the text; 0 in a free slot
    };

    Slot& SlotOf(quint32 hash, QStringView text);
    void Grow();

    std::vector<Slot> slots_ = std::vector<Slot>(64);     // a power of two of them, half of them free at least
    std::vector<size_t> begins_ = std::vector<size_t>(1); // of the texts, and the end of the last one
    std::u16string characters_;
};

} // namespace quellbox
