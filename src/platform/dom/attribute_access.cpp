#include "platform/dom/attribute_access.h"

#include "platform/dom/carriable_text.h"
#include "platform/dom/xml_text.h"

#include <string>

#include <libxml/valid.h>

#include "platform/dom/subtree.h"
#include "platform/dom/tree.h"

namespace qvr::dom {
namespace {

constexpr KnownNamespace kKnownNamespaces[] = {
    {"xlink", "http://www.w3.org/1999/xlink"},
    {"xsi", "http://www.w3.org/2001/XMLSchema-instance"},
};

// Attributes the lookup tables follow.
constexpr const char* kTrackedNames[] = {"id", "idref"};

bool equals(const xmlChar* a, std::string_view b) {
    return a && std::string_view(reinterpret_cast<const char*>(a)) == b;
}

struct QualifiedName {
    std::string prefix; // empty when there is none
    std::string local;
};

QualifiedName split(std::string_view name) {
    const auto colon = name.find(':');
    if (colon == std::string_view::npos) return {std::string(), std::string(name)};
    return {std::string(name.substr(0, colon)), std::string(name.substr(colon + 1))};
}

bool isDeclaration(std::string_view name) {
    return name == "xmlns" || name.starts_with("xmlns:");
}

const char* knownUri(std::string_view prefix) {
    for (const auto& known : kKnownNamespaces)
        if (prefix == known.prefix) return known.uri;
    return nullptr;
}

// The namespace URI a prefix stands for at `element`, or null.
const xmlChar* resolve(xmlNodePtr element, const std::string& prefix) {
    if (prefix == "xml") return XML_XML_NAMESPACE;
    if (xmlNsPtr ns = xmlSearchNs(element->doc, element, bytes(prefix))) return ns->href;
    return bytes(knownUri(prefix) ? knownUri(prefix) : "");
}

std::string qualifiedName(xmlAttrPtr attribute) {
    std::string name;
    if (attribute->ns && attribute->ns->prefix) {
        name = reinterpret_cast<const char*>(attribute->ns->prefix);
        name += ':';
    }
    return name + reinterpret_cast<const char*>(attribute->name);
}

xmlNsPtr declarationOf(xmlNodePtr element, const xmlChar* prefix) {
    for (xmlNsPtr ns = element->nsDef; ns; ns = ns->next)
        if (xmlStrEqual(ns->prefix, prefix)) return ns;
    return nullptr;
}

// Brackets a change of an attribute with the lookup tables when they follow it. The name is
// copied: the attribute may be freed by the change. Any attribute may name its element.
class TrackedChange {
public:
    TrackedChange(xmlNodePtr element, const xmlChar* name, bool tracked)
        : element_(tracked ? element : nullptr),
          name_(tracked ? reinterpret_cast<const char*>(name) : "") {
        Index::namingChanged();
        if (element_) Tree::of(element_)->index().attributeChanging(element_, bytes(name_));
    }
    ~TrackedChange() {
        if (element_) Tree::of(element_)->index().attributeChanged(element_, bytes(name_));
    }
    TrackedChange(const TrackedChange&) = delete;
    TrackedChange& operator=(const TrackedChange&) = delete;

private:
    xmlNodePtr element_;
    std::string name_;
};

bool isTrackedName(std::string_view name) {
    for (const char* tracked : kTrackedNames)
        if (name == tracked) return true;
    return false;
}

} // namespace

const KnownNamespace* AttributeAccess::knownNamespaces(std::size_t* count) {
    *count = std::size(kKnownNamespaces);
    return kKnownNamespaces;
}

bool AttributeAccess::isTracked(xmlAttrPtr attribute) {
    return !attribute->ns && isTrackedName(reinterpret_cast<const char*>(attribute->name));
}

xmlAttrPtr AttributeAccess::find(xmlNodePtr element, std::string_view name) {
    if (name.find(':') == std::string_view::npos) {
        // A name without prefix (the usual case) is a plain attribute's, compared in place.
        for (xmlAttrPtr attr = element->properties; attr; attr = attr->next)
            if (!attr->ns && equals(attr->name, name)) return attr;
        return nullptr;
    }
    const QualifiedName q = split(name);
    const xmlChar* uri = q.prefix.empty() ? nullptr : resolve(element, q.prefix);
    for (xmlAttrPtr attr = element->properties; attr; attr = attr->next) {
        if (!attr->ns) {
            // A plain attribute, or one whose prefix was never declared (kept by its full name).
            if (equals(attr->name, q.prefix.empty() ? q.local : std::string_view(name)))
                return attr;
        } else if (uri && *uri && xmlStrEqual(attr->ns->href, uri) && equals(attr->name, q.local)) {
            return attr;
        }
    }
    return nullptr;
}

HRESULT AttributeAccess::checkValue(std::string_view name, const String& value) {
    // The name goes into the message only when there is one to give.
    if (uncarriable(value.view()).empty()) return S_OK;
    return checkCarriable(value, "The value of attribute \"" + std::string(name) + "\"");
}

HRESULT AttributeAccess::get(xmlNodePtr element, const String& name, String* value) {
    if (isDeclaration(name.view())) {
        const QualifiedName q = split(name.view());
        xmlNsPtr ns = declarationOf(element, q.prefix.empty() ? nullptr : bytes(q.local.c_str()));
        if (!ns) return S_FALSE;
        *value = String(reinterpret_cast<const char*>(ns->href ? ns->href : bytes("")));
        return S_OK;
    }
    xmlAttrPtr attr = find(element, name.view());
    if (!attr) return S_FALSE;
    *value = contentOf(reinterpret_cast<xmlNodePtr>(attr));
    return S_OK;
}

HRESULT AttributeAccess::set(xmlNodePtr element, const String& name, const String& value) {
    if (name.isEmpty() || holdsNul(name) || xmlValidateQName(bytes(name.c_str()), 0) != 0)
        return E_FAIL;
    if (HRESULT hr = checkValue(name.view(), value); hr != S_OK) return hr;
    if (isDeclaration(name.view())) return setDeclaration(element, name, value);
    const auto colon = name.view().find(':');
    const bool prefixed = colon != std::string_view::npos && colon > 0;
    const QualifiedName q = prefixed ? split(name.view()) : QualifiedName();
    xmlNsPtr ns = nullptr;
    if (prefixed) {
        ns = xmlSearchNs(element->doc, element, bytes(q.prefix.c_str()));
        if (!ns && knownUri(q.prefix))
            ns = xmlNewNs(element, bytes(knownUri(q.prefix)), bytes(q.prefix.c_str()));
    }
    // Without a namespace an attribute keeps its full name, prefix and all.
    const std::string& stored = ns ? q.local : name.str();
    TrackedChange change(element, bytes(stored.c_str()), !ns && isTrackedName(stored));
    if (!xmlSetNsProp(element, ns, bytes(stored.c_str()), bytes(value.c_str())))
        return E_OUTOFMEMORY;
    return S_OK;
}

HRESULT AttributeAccess::remove(xmlNodePtr element, const String& name) {
    if (isDeclaration(name.view())) return removeDeclaration(element, name);
    xmlAttrPtr attr = find(element, name.view());
    if (!attr) return S_FALSE;
    TrackedChange change(element, attr->name, isTracked(attr));
    if (attr->_private) {
        // An object still stands for the attribute: it lives on, alone.
        xmlUnlinkNode(reinterpret_cast<xmlNodePtr>(attr));
        makeAlone(attr);
    } else {
        xmlRemoveProp(attr);
    }
    return S_OK;
}

HRESULT AttributeAccess::setValue(xmlAttrPtr attribute, const String& value) {
    if (HRESULT hr = checkValue(qualifiedName(attribute), value); hr != S_OK) return hr;
    if (xmlNodePtr element = attribute->parent) {
        TrackedChange change(element, attribute->name, isTracked(attribute));
        if (!xmlSetNsProp(element, attribute->ns, attribute->name, bytes(value.c_str())))
            return E_OUTOFMEMORY;
        return S_OK;
    }
    xmlFreeNodeList(attribute->children);
    attribute->children = attribute->last = nullptr;
    if (!value.isEmpty()) {
        xmlNodePtr text = xmlNewDocTextLen(attribute->doc, bytes(value.c_str()),
                                           static_cast<int>(value.byteLength()));
        if (!text) return E_OUTOFMEMORY;
        text->parent = reinterpret_cast<xmlNodePtr>(attribute);
        attribute->children = attribute->last = text;
    }
    return S_OK;
}

xmlAttrPtr AttributeAccess::copyAlone(xmlAttrPtr attribute) {
    auto* copy = reinterpret_cast<xmlAttrPtr>(
        xmlDocCopyNode(reinterpret_cast<xmlNodePtr>(attribute), attribute->doc, 1));
    if (copy && attribute->ns)
        xmlNodeSetName(reinterpret_cast<xmlNodePtr>(copy), bytes(qualifiedName(attribute).c_str()));
    return copy;
}

void AttributeAccess::makeAlone(xmlAttrPtr attribute) {
    if (attribute->atype == XML_ATTRIBUTE_ID) {
        xmlRemoveID(attribute->doc, attribute);
        attribute->atype = XML_ATTRIBUTE_CDATA;
    }
    // A declaration on the former element may go before the attribute does: keep the qualified
    // name as the plain name instead of a reference to it. The XML namespace belongs to the
    // document and stays.
    if (attribute->ns && !xmlStrEqual(attribute->ns->href, XML_XML_NAMESPACE)) {
        const std::string name = qualifiedName(attribute);
        attribute->ns = nullptr;
        xmlNodeSetName(reinterpret_cast<xmlNodePtr>(attribute), bytes(name.c_str()));
    }
}

HRESULT AttributeAccess::setDeclaration(xmlNodePtr element, const String& name,
                                        const String& value) {
    const QualifiedName q = split(name.view());
    const bool prefixed = !q.prefix.empty();
    if (prefixed && (q.local == "xml" || q.local == "xmlns" || value.isEmpty())) return E_FAIL;
    const xmlChar* prefix = prefixed ? bytes(q.local.c_str()) : nullptr;
    if (xmlNsPtr ns = declarationOf(element, prefix)) {
        if (!xmlStrEqual(ns->href, bytes(value.c_str()))) {
            xmlFree(const_cast<xmlChar*>(ns->href));
            ns->href = xmlStrdup(bytes(value.c_str()));
        }
        return S_OK;
    }
    return xmlNewNs(element, bytes(value.c_str()), prefix) ? S_OK : E_FAIL;
}

HRESULT AttributeAccess::removeDeclaration(xmlNodePtr element, const String& name) {
    const QualifiedName q = split(name.view());
    xmlNsPtr ns = declarationOf(element, q.prefix.empty() ? nullptr : bytes(q.local.c_str()));
    if (!ns) return S_FALSE;
    if (walkSubtreeWithAttributes(element, [&](xmlNodePtr n) { return n->ns == ns; }))
        return E_FAIL;
    xmlNsPtr* link = &element->nsDef;
    while (*link != ns) link = &(*link)->next;
    *link = ns->next;
    ns->next = nullptr;
    xmlFreeNs(ns);
    return S_OK;
}

} // namespace qvr::dom
