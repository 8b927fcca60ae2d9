#include "platform/dom/index.h"

#include <algorithm>

#include "platform/dom/subtree.h"

namespace qvr::dom {
namespace {

constexpr const char* kIdName = "id";
constexpr const char* kIdrefName = "idref";

bool isPlainElement(xmlNodePtr node, const char* name) {
    return node && node->type == XML_ELEMENT_NODE && !node->ns &&
           xmlStrEqual(node->name, reinterpret_cast<const xmlChar*>(name));
}

std::string contentOf(xmlNodePtr node) {
    xmlChar* content = xmlNodeGetContent(node);
    std::string result = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return result;
}

void erase(std::unordered_map<std::string, std::vector<xmlNodePtr>>& table, const std::string& key,
           xmlNodePtr node) {
    auto found = table.find(key);
    if (found == table.end()) return;
    auto& nodes = found->second;
    auto at = std::find(nodes.begin(), nodes.end(), node);
    if (at != nodes.end()) {
        *at = nodes.back();
        nodes.pop_back();
    }
    if (nodes.empty()) table.erase(found);
}

const std::vector<xmlNodePtr>&
lookUp(const std::unordered_map<std::string, std::vector<xmlNodePtr>>& table,
       const std::string& key) {
    static const std::vector<xmlNodePtr> none;
    auto found = table.find(key);
    return found == table.end() ? none : found->second;
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

void Index::textChanged(xmlNodePtr at) {
    if (!rowsBuilt_) return;
    guard([&] {
        if (xmlNodePtr row = rowAbove(at)) {
            removeRow(row);
            addRow(row);
        }
    });
}

void Index::attributeChanging(xmlNodePtr element, const xmlChar* name) {
    if (!attributesBuilt_ || !inTree(element)) return;
    guard([&] {
        Table& table = xmlStrEqual(name, BAD_CAST kIdName) ? byId_ : byIdref_;
        for (xmlAttrPtr attr = element->properties; attr; attr = attr->next)
            if (!attr->ns && xmlStrEqual(attr->name, name))
                erase(table, contentOf(reinterpret_cast<xmlNodePtr>(attr)), element);
    });
}

void Index::attributeChanged(xmlNodePtr element, const xmlChar* name) {
    if (!attributesBuilt_ || !inTree(element)) return;
    guard([&] {
        Table& table = xmlStrEqual(name, BAD_CAST kIdName) ? byId_ : byIdref_;
        for (xmlAttrPtr attr = element->properties; attr; attr = attr->next)
            if (!attr->ns && xmlStrEqual(attr->name, name))
                table[contentOf(reinterpret_cast<xmlNodePtr>(attr))].push_back(element);
    });
}

const std::vector<xmlNodePtr>& Index::withId(const std::string& value) {
    buildAttributes();
    return lookUp(byId_, value);
}

const std::vector<xmlNodePtr>& Index::withIdref(const std::string& value) {
    buildAttributes();
    return lookUp(byIdref_, value);
}

const std::vector<xmlNodePtr>& Index::rowsWithKey(const std::string& key) {
    buildRows();
    return lookUp(rowsByKey_, key);
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

void Index::addAttributes(xmlNodePtr element) {
    for (xmlAttrPtr attr = element->properties; attr; attr = attr->next) {
        if (attr->ns) continue;
        if (xmlStrEqual(attr->name, BAD_CAST kIdName))
            byId_[contentOf(reinterpret_cast<xmlNodePtr>(attr))].push_back(element);
        else if (xmlStrEqual(attr->name, BAD_CAST kIdrefName))
            byIdref_[contentOf(reinterpret_cast<xmlNodePtr>(attr))].push_back(element);
    }
}

void Index::removeAttributes(xmlNodePtr element) {
    for (xmlAttrPtr attr = element->properties; attr; attr = attr->next) {
        if (attr->ns) continue;
        if (xmlStrEqual(attr->name, BAD_CAST kIdName))
            erase(byId_, contentOf(reinterpret_cast<xmlNodePtr>(attr)), element);
        else if (xmlStrEqual(attr->name, BAD_CAST kIdrefName))
            erase(byIdref_, contentOf(reinterpret_cast<xmlNodePtr>(attr)), element);
    }
}

void Index::addRow(xmlNodePtr row) {
    if (keyOfRow_.count(row)) return;
    std::string key = contentOf(row);
    rowsByKey_[key].push_back(row);
    keyOfRow_.emplace(row, std::move(key));
}

void Index::removeRow(xmlNodePtr row) {
    auto found = keyOfRow_.find(row);
    if (found == keyOfRow_.end()) return;
    erase(rowsByKey_, found->second, row);
    keyOfRow_.erase(found);
}

} // namespace qvr::dom
