// Per-document lookup tables for the selections the model repeats for every row and cell: elements
// by `id`, elements by `idref`, and the rows of a table by their key text. They cover the nodes
// that stand in the document's tree (detached subtrees are never in them), are built on first use
// and are kept exact by every change the layer makes: the code that changes the tree tells the
// index before a subtree leaves it, after one enters it, after text changes and around attribute
// changes.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <libxml/tree.h>

#include "platform/dom/text_table.h"

namespace qvr::dom {

class Index {
public:
    // The elements a value names, in no particular order; valid until the tree changes.
    using Nodes = TextTable::Nodes;

    explicit Index(xmlDocPtr doc) : doc_(doc) {}
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;

    // `top` (still linked) is about to leave its place.
    void removing(xmlNodePtr top);
    // `top` has just been linked.
    void inserted(xmlNodePtr top);
    // The text below `at` (or of `at` itself) has changed.
    void textChanged(xmlNodePtr at);
    // The attribute `name` (without namespace) of `element` is about to change / has changed.
    void attributeChanging(xmlNodePtr element, const xmlChar* name);
    void attributeChanged(xmlNodePtr element, const xmlChar* name);

    // Elements in the tree whose `id` (or `idref`) is `value`, in no particular order.
    Nodes withId(std::string_view value);
    Nodes withIdref(std::string_view value);
    // Table rows (`/vCATTable/ColumnUnique/RowUnique`) whose text is `key`, in no particular order.
    Nodes rowsWithKey(std::string_view key);

    // The rows that `/vCATTable/ColumnUnique/RowUnique[n]` selects: the n-th (one-based) row of
    // each `ColumnUnique` of a table root, in document order (the first only when `firstOnly`).
    // A run of such lookups with no change of the tree between them is answered from a list of
    // the rows in order, made at the run's second lookup; a single lookup walks to its row.
    void rowsAt(std::size_t n, bool firstOnly, std::vector<xmlNodePtr>* nodes);

    // A count, over every document of the process, of the changes that can alter what names an
    // element: insertions, removals, attribute changes, a document's new content, and text
    // changes within a `RowUnique` (a row's text is its key). Other text changes, such as the
    // values of cells, leave it. Whoever keeps answers derived from such names (say, which item
    // of a list carries a key) may keep them while the count stays the same.
    static std::uint64_t namingVersion() { return namingVersion_.load(std::memory_order_relaxed); }
    static void namingChanged() { namingVersion_.fetch_add(1, std::memory_order_relaxed); }

    // True when `node` stands in the document's tree (its top is the document node).
    static bool inTree(xmlNodePtr node);
    // True when `element` is a row of a table: `RowUnique` below `ColumnUnique` below the root
    // `vCATTable`, all without namespace.
    static bool isTableRow(xmlNodePtr element);

private:
    void reset() noexcept;
    // Any insertion or removal: the list of rows in order no longer holds.
    void structureChanged() noexcept {
        rowOrder_.clear();
        rowOrderValid_ = false;
        positionalLookups_ = 0;
    }
    template <class Change>
    void guard(Change&& change) noexcept;
    void buildAttributes();
    void buildRows();
    void addAttributes(xmlNodePtr element);
    void removeAttributes(xmlNodePtr element);
    // Calls `f(table, value)` for each attribute of `element` that one of the tables indexes.
    template <class F>
    void forEachIndexedAttribute(xmlNodePtr element, F&& f);
    // Calls `f(table, value)` for the attributes `name` (`id` or `idref`) of an indexed element.
    template <class F>
    void forEachAttributeNamed(xmlNodePtr element, const xmlChar* name, F&& f);
    void addRow(xmlNodePtr row);
    void removeRow(xmlNodePtr row);
    // The table row that holds `node` (or is it), if any.
    static xmlNodePtr rowAbove(xmlNodePtr node);

    static inline std::atomic<std::uint64_t> namingVersion_{0};

    xmlDocPtr doc_;
    bool attributesBuilt_ = false;
    bool rowsBuilt_ = false;
    // The tables take their memory from a pool of their own rather than from among the
    // document's nodes, which then lie closer together for the walks over the whole tree
    // (saving, selecting by XPath); the pool's large chunks lie on large pages.
    std::pmr::unsynchronized_pool_resource pool_{memory::largePages()};
    TextTable byId_{&pool_};
    TextTable byIdref_{&pool_};
    TextTable rowsByKey_{&pool_};
    std::pmr::unordered_map<xmlNodePtr, std::pmr::string> keyOfRow_{&pool_};
    // The rows of each ColumnUnique of the root, in order; valid until the tree changes.
    std::vector<std::vector<xmlNodePtr>> rowOrder_;
    bool rowOrderValid_ = false;
    unsigned positionalLookups_ = 0;
};

} // namespace qvr::dom
