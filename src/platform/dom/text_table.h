// A table from a text (an attribute value, a row's key) to the elements that carry it, laid out
// for lookups that miss the processor's caches: open addressing over one array of slots of a cache
// line each, every slot holding the text's hash, the text itself when short (ids and keys are),
// and the element itself when it is the only one. Each element is held with its parent, which
// answers "the children of this element that carry the text" without reading the candidates.
// Finding the elements of a text then costs one read of memory, where a node-based map follows a
// bucket, a node and the node's text. The slots of a large table lie on large pages; long texts
// and lists of several elements take their memory from the resource given.
#pragma once

#include <cstdint>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

#include "platform/memory/large_pages.h"

namespace qvr::dom {

class TextTable {
public:
    struct Entry {
        xmlNodePtr node;
        // As it stood when the entry was made: whoever moves an element takes its entries out
        // before and puts them back after.
        xmlNodePtr parent;
    };
    using Nodes = std::span<const Entry>;

    explicit TextTable(std::pmr::memory_resource* memory) : memory_(memory) {}
    ~TextTable() { clear(); }
    TextTable(const TextTable&) = delete;
    TextTable& operator=(const TextTable&) = delete;

    // The elements that carry `text`, in no particular order; valid until the table changes.
    Nodes find(std::string_view text) const;
    // Adds `node` to the elements of `text`; throws std::bad_alloc with the table unchanged.
    void add(std::string_view text, xmlNodePtr node);
    // Takes `node` from the elements of `text`, and the text with its last element.
    void remove(std::string_view text, xmlNodePtr node);
    void clear() noexcept;
    std::size_t size() const { return size_; }

private:
    static constexpr std::size_t kInlineText = 28;

    struct alignas(64) Slot {
        // Zero marks an empty slot: the hash of a text held is never zero.
        std::uint32_t hash = 0;
        std::uint32_t length = 0;
        union {
            char inlineText[kInlineText];
            char* longText;
        };
        std::uint32_t count = 0;
        std::uint32_t capacity = 0; // of `many`; 0 while `one` holds the single element
        union {
            Entry one;
            Entry* many;
        };

        std::string_view text() const {
            return {length <= kInlineText ? inlineText : longText, length};
        }
        Entry* entries() { return capacity == 0 ? &one : many; }
        Nodes nodes() const { return {capacity == 0 ? &one : many, count}; }
    };
    static_assert(sizeof(Slot) == 64);

    static std::uint32_t hashOf(std::string_view text);
    std::size_t mask() const { return slots_.size() - 1; }
    // The slot that holds `text`, or the empty slot where it would go.
    std::size_t probe(std::string_view text, std::uint32_t hash) const;
    void grow();
    void release(Slot& slot) noexcept;
    // Empties slot `at`, moving back the slots after it that would no longer be found.
    void vacate(std::size_t at) noexcept;

    std::pmr::memory_resource* memory_;
    std::pmr::vector<Slot> slots_{memory::largePages()};
    std::size_t size_ = 0;
};

} // namespace qvr::dom
