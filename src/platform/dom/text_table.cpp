#include "platform/dom/text_table.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace qvr::dom {

std::uint32_t TextTable::hashOf(std::string_view text) {
    const std::size_t full = std::hash<std::string_view>()(text);
    const auto hash = static_cast<std::uint32_t>(full ^ (full >> 32));
    return hash ? hash : 1;
}

std::size_t TextTable::probe(std::string_view text, std::uint32_t hash) const {
    std::size_t at = hash & mask();
    for (;; at = (at + 1) & mask()) {
        const Slot& slot = slots_[at];
        if (slot.hash == 0 || (slot.hash == hash && slot.text() == text)) return at;
    }
}

TextTable::Nodes TextTable::find(std::string_view text) const {
    if (size_ == 0) return {};
    const Slot& slot = slots_[probe(text, hashOf(text))];
    return slot.hash ? slot.nodes() : Nodes();
}

void TextTable::grow() {
    std::pmr::vector<Slot> larger(slots_.empty() ? 16 : slots_.size() * 2, memory::largePages());
    const std::size_t largerMask = larger.size() - 1;
    for (const Slot& slot : slots_) {
        if (!slot.hash) continue;
        std::size_t at = slot.hash & largerMask;
        while (larger[at].hash) at = (at + 1) & largerMask;
        larger[at] = slot;
    }
    slots_.swap(larger);
}

void TextTable::add(std::string_view text, xmlNodePtr node) {
    // At most three slots in four are taken, so that a probe seldom leaves its first line.
    if ((size_ + 1) * 4 > slots_.size() * 3) grow();
    const std::uint32_t hash = hashOf(text);
    Slot& slot = slots_[probe(text, hash)];
    if (!slot.hash) {
        // The slot stays empty (its hash zero) until it is whole, should the allocation throw.
        if (text.size() > kInlineText)
            slot.longText = static_cast<char*>(memory_->allocate(text.size(), 1));
        slot.length = static_cast<std::uint32_t>(text.size());
        std::memcpy(slot.length > kInlineText ? slot.longText : slot.inlineText, text.data(),
                    text.size());
        slot.count = 1;
        slot.capacity = 0;
        slot.one = Entry{node, node->parent};
        slot.hash = hash;
        ++size_;
        return;
    }
    if (slot.capacity == 0 || slot.count == slot.capacity) {
        const std::uint32_t capacity = std::max<std::uint32_t>(4, slot.count * 2);
        auto* many =
            static_cast<Entry*>(memory_->allocate(capacity * sizeof(Entry), alignof(Entry)));
        std::copy_n(slot.entries(), slot.count, many);
        if (slot.capacity)
            memory_->deallocate(slot.many, slot.capacity * sizeof(Entry), alignof(Entry));
        slot.many = many;
        slot.capacity = capacity;
    }
    slot.many[slot.count++] = Entry{node, node->parent};
}

void TextTable::remove(std::string_view text, xmlNodePtr node) {
    if (size_ == 0) return;
    const std::size_t at = probe(text, hashOf(text));
    Slot& slot = slots_[at];
    if (!slot.hash) return;
    Entry* entries = slot.entries();
    Entry* end = entries + slot.count;
    Entry* found =
        std::find_if(entries, end, [&](const Entry& entry) { return entry.node == node; });
    if (found == end) return;
    *found = end[-1];
    if (--slot.count == 0) vacate(at);
}

void TextTable::release(Slot& slot) noexcept {
    if (slot.length > kInlineText) memory_->deallocate(slot.longText, slot.length, 1);
    if (slot.capacity)
        memory_->deallocate(slot.many, slot.capacity * sizeof(Entry), alignof(Entry));
    slot.hash = 0;
}

void TextTable::vacate(std::size_t at) noexcept {
    release(slots_[at]);
    --size_;
    // Backward shift: a later slot of the same run moves into the hole when its home lies at or
    // before the hole, so that no probe meets an empty slot before what it looks for.
    for (std::size_t next = (at + 1) & mask(); slots_[next].hash; next = (next + 1) & mask()) {
        const std::size_t home = slots_[next].hash & mask();
        if (((next - home) & mask()) >= ((next - at) & mask())) {
            slots_[at] = slots_[next];
            slots_[next].hash = 0;
            at = next;
        }
    }
}

void TextTable::clear() noexcept {
    for (Slot& slot : slots_)
        if (slot.hash) release(slot);
    slots_.clear();
    size_ = 0;
}

} // namespace qvr::dom
