#include "platform/dom/index.h"
#include "platform/dom/xml_text.h"

#include <tuple>

#include "platform/dom/subtree.h"

namespace qvr::dom {
namespace {

constexpr const char* kIdName = "id";
constexpr const char* kIdrefName = "idref";

std::string_view valueOf(xmlAttrPtr attribute, std::string& scratch) {
    return contentView(reinterpret_cast<xmlNodePtr>(attribute), scratch);
}

} // namespace

bool Index::inTree(xmlNodePtr node) {
    while (node->parent) node = node->parent;
    return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE;
}

bool Index::isTableRow(xmlNodePtr element) {
    if (!isPlainElement(element, "RowUnique")) return false;
    xmlNodePtr column = element->parent;
    if (!isPlainElement(column, "ColumnUnique")) return false;
    xmlNodePtr table = column->parent;
    return isPlainElement(table, "vCATTable") && table->parent &&
           table->parent->type == XML_DOCUMENT_NODE;
}

xmlNodePtr Index::rowAbove(xmlNodePtr node) {
    for (; node; node = node->parent)
        if (isTableRow(node)) return node;
    return nullptr;
}

void Index::reset() noexcept {
    structureChanged();
    attributesBuilt_ = rowsBuilt_ = false;
    byId_.clear();
    byIdref_.clear();
    rowsByKey_.clear();
    keyOfRow_.clear();
}

template <class Change>
void Index::guard(Change&& change) noexcept {
    try {
        change();
    } catch (...) {
        // A table that missed a change must not answer: drop them all, they are built again on
        // the next use.
        reset();
    }
}

void Index::removing(xmlNodePtr top) {
    namingChanged();
    structureChanged();
    if ((!attributesBuilt_ && !rowsBuilt_) || !inTree(top)) return;
    guard([&] {
        walkSubtree(top, [&](xmlNodePtr node) {
            if (node->type != XML_ELEMENT_NODE) return false;
            if (attributesBuilt_) removeAttributes(node);
            if (rowsBuilt_) removeRow(node);
            return false;
        });
    });
}

void Index::inserted(xmlNodePtr top) {
    namingChanged();
    structureChanged();
    if ((!attributesBuilt_ && !rowsBuilt_) || !inTree(top)) return;
    guard([&] {
        walkSubtree(top, [&](xmlNodePtr node) {
            if (node->type != XML_ELEMENT_NODE) return false;
            if (attributesBuilt_) addAttributes(node);
            if (rowsBuilt_ && isTableRow(node)) addRow(node);
            return false;
        });
    });
}

void Index::rowsAt(std::size_t n, bool firstOnly, std::vector<xmlNodePtr>* nodes) {
    xmlNodePtr root = xmlDocGetRootElement(doc_);
    if (!isPlainElement(root, "vCATTable") || n == 0) return;
    if (!rowOrderValid_ && positionalLookups_++ >= 1) {
        rowOrder_.clear();
        for (xmlNodePtr column = root->children; column; column = column->next) {
            if (!isPlainElement(column, "ColumnUnique")) continue;
            auto& rows = rowOrder_.emplace_back();
            for (xmlNodePtr row = column->children; row; row = row->next)
                if (isPlainElement(row, "RowUnique")) rows.push_back(row);
        }
        rowOrderValid_ = true;
    }
    if (rowOrderValid_) {
        for (const auto& rows : rowOrder_) {
            if (n > rows.size()) continue;
            nodes->push_back(rows[n - 1]);
            if (firstOnly) return;
        }
        return;
    }
    for (xmlNodePtr column = root->children; column; column = column->next) {
        if (!isPlainElement(column, "ColumnUnique")) continue;
        std::size_t seen = 0;
        for (xmlNodePtr row = column->children; row; row = row->next) {
            if (isPlainElement(row, "RowUnique") && ++seen == n) {
                nodes->push_back(row);
                break;
            }
        }
        if (firstOnly && !nodes->empty()) return;
    }
}

void Index::textChanged(xmlNodePtr at) {
    // A table row is a RowUnique: the walk for the row goes on from the first one.
    xmlNodePtr first = at;
    while (first && !isPlainElement(first, "RowUnique")) first = first->parent;
    if (!first) return;
    namingChanged();
    if (!rowsBuilt_) return;
    guard([&] {
        if (xmlNodePtr row = rowAbove(first)) {
            removeRow(row);
            addRow(row);
        }
    });
}

template <class F>
void Index::forEachAttributeNamed(xmlNodePtr element, const xmlChar* name, F&& f) {
    if (!attributesBuilt_ || !inTree(element)) return;
    guard([&] {
        TextTable& table = xmlStrEqual(name, BAD_CAST kIdName) ? byId_ : byIdref_;
        std::string scratch;
        for (xmlAttrPtr attr = element->properties; attr; attr = attr->next)
            if (!attr->ns && xmlStrEqual(attr->name, name)) f(table, valueOf(attr, scratch));
    });
}

void Index::attributeChanging(xmlNodePtr element, const xmlChar* name) {
    namingChanged();
    forEachAttributeNamed(element, name, [&](TextTable& table, std::string_view value) {
        table.remove(value, element);
    });
}

void Index::attributeChanged(xmlNodePtr element, const xmlChar* name) {
    forEachAttributeNamed(element, name, [&](TextTable& table, std::string_view value) {
        table.add(value, element);
    });
}

Index::Nodes Index::withId(std::string_view value) {
    buildAttributes();
    return byId_.find(value);
}

Index::Nodes Index::withIdref(std::string_view value) {
    buildAttributes();
    return byIdref_.find(value);
}

Index::Nodes Index::rowsWithKey(std::string_view key) {
    buildRows();
    return rowsByKey_.find(key);
}

void Index::buildAttributes() {
    if (attributesBuilt_) return;
    try {
        walkSubtree(reinterpret_cast<xmlNodePtr>(doc_), [&](xmlNodePtr node) {
            if (node->type == XML_ELEMENT_NODE) addAttributes(node);
            return false;
        });
    } catch (...) {
        byId_.clear();
        byIdref_.clear();
        throw;
    }
    attributesBuilt_ = true;
}

void Index::buildRows() {
    if (rowsBuilt_) return;
    try {
        xmlNodePtr root = xmlDocGetRootElement(doc_);
        if (isPlainElement(root, "vCATTable")) {
            for (xmlNodePtr column = root->children; column; column = column->next) {
                if (!isPlainElement(column, "ColumnUnique")) continue;
                for (xmlNodePtr row = column->children; row; row = row->next)
                    if (isPlainElement(row, "RowUnique")) addRow(row);
            }
        }
    } catch (...) {
        rowsByKey_.clear();
        keyOfRow_.clear();
        throw;
    }
    rowsBuilt_ = true;
}

template <class F>
void Index::forEachIndexedAttribute(xmlNodePtr element, F&& f) {
    std::string scratch;
    for (xmlAttrPtr attr = element->properties; attr; attr = attr->next) {
        if (attr->ns) continue;
        if (xmlStrEqual(attr->name, BAD_CAST kIdName))
            f(byId_, valueOf(attr, scratch));
        else if (xmlStrEqual(attr->name, BAD_CAST kIdrefName))
            f(byIdref_, valueOf(attr, scratch));
    }
}

void Index::addAttributes(xmlNodePtr element) {
    forEachIndexedAttribute(
        element, [&](TextTable& table, std::string_view value) { table.add(value, element); });
}

void Index::removeAttributes(xmlNodePtr element) {
    forEachIndexedAttribute(
        element, [&](TextTable& table, std::string_view value) { table.remove(value, element); });
}

void Index::addRow(xmlNodePtr row) {
    if (keyOfRow_.count(row)) return;
    std::string scratch;
    const std::string_view key = contentView(row, scratch);
    rowsByKey_.add(key, row);
    keyOfRow_.emplace(std::piecewise_construct, std::forward_as_tuple(row),
                      std::forward_as_tuple(key));
}

void Index::removeRow(xmlNodePtr row) {
    auto found = keyOfRow_.find(row);
    if (found == keyOfRow_.end()) return;
    rowsByKey_.remove(found->second, row);
    keyOfRow_.erase(found);
}

} // namespace qvr::dom
