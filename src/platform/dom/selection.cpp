#include "platform/dom/selection.h"

#include "platform/com/failure.h"
#include "platform/dom/attribute_access.h"
#include "platform/dom/handle.h"
#include "platform/dom/indexed_selection.h"
#include "platform/dom/node_list.h"
#include "platform/dom/tree.h"
#include "platform/dom/xml_text.h"
#include "platform/dom/xpath_engine.h"

namespace qvr::dom {

HRESULT Selection::select(xmlNodePtr context, const std::string& expression, bool firstOnly,
                          std::vector<xmlNodePtr>* nodes) {
    nodes->clear();
    if (expression.find('\0') != std::string::npos) return E_FAIL;
    if (IndexedSelection::answer(context, expression, firstOnly, nodes)) return S_OK;
    return XPathEngine::select(*Tree::of(context), context, expression, firstOnly, nodes);
}

namespace {

// The nodes the tables give for the form, when they cover the context.
bool answeredByForm(IXMLDOMNode* context, const IndexedForm& form, std::string_view value,
                    bool firstOnly, std::vector<xmlNodePtr>* nodes) {
    xmlNodePtr node = context ? Handle::nodeOf(context) : nullptr;
    return node && IndexedSelection::answer(node, form, value, firstOnly, nodes);
}

} // namespace

HRESULT Selection::selectOne(IXMLDOMNode* context, const IndexedForm& form, std::string_view value,
                             Ref<IXMLDOMNode>* found) {
    if (!found) return E_POINTER;
    *found = nullptr;
    return guarded([&] {
        // The model asks this for every cell it places: the list is kept from call to call.
        thread_local std::vector<xmlNodePtr> nodes;
        if (!answeredByForm(context, form, value, true, &nodes))
            return context ? context->selectSingleNode(String(form.text(value)), found) : E_FAIL;
        if (nodes.empty()) return S_FALSE;
        *found = Tree::of(nodes.front())->wrap(nodes.front());
        return *found ? S_OK : S_FALSE;
    });
}

HRESULT Selection::selectOneAttribute(IXMLDOMNode* context, const IndexedForm& form,
                                      std::string_view value, const String& name, String* text) {
    if (!text) return E_POINTER;
    *text = String();
    if (name.isNull()) return E_INVALIDARG;
    return guarded([&] {
        thread_local std::vector<xmlNodePtr> nodes;
        xmlNodePtr element = nullptr;
        if (answeredByForm(context, form, value, true, &nodes)) {
            if (nodes.empty()) return S_FALSE;
            element = nodes.front();
        } else {
            Ref<IXMLDOMNode> node;
            const HRESULT hr = selectOne(context, form, value, &node);
            if (hr != S_OK) return hr;
            element = Handle::nodeOf(node);
        }
        if (!element || element->type != XML_ELEMENT_NODE) return E_NOINTERFACE;
        const HRESULT hr = AttributeAccess::get(element, name, text);
        return FAILED(hr) ? hr : S_OK;
    });
}

namespace {

// Whether `element` is named `tag` as the node names it: prefix, colon and local name, or the
// local name alone when it has no prefix.
bool namedAs(xmlNodePtr element, std::string_view tag) {
    const std::string_view local = chars(element->name);
    const xmlChar* prefix = element->ns ? element->ns->prefix : nullptr;
    if (!prefix) return local == tag;
    const std::string_view head = chars(prefix);
    return tag.size() == head.size() + 1 + local.size() && tag.starts_with(head) &&
           tag[head.size()] == ':' && tag.ends_with(local);
}

} // namespace

HRESULT Selection::nextChildWithAttribute(IXMLDOMNode* parent, IXMLDOMNode* after,
                                          std::string_view tag, std::string_view attribute,
                                          std::string_view value, Ref<IXMLDOMNode>* found,
                                          bool* equal) {
    if (!found || !equal) return E_POINTER;
    *found = nullptr;
    *equal = false;
    return guarded([&] {
        xmlNodePtr container = parent ? Handle::nodeOf(parent) : nullptr;
        if (!container || container->type != XML_ELEMENT_NODE) return E_INVALIDARG;
        xmlNodePtr node = container->children;
        if (after) {
            xmlNodePtr previous = Handle::nodeOf(after);
            if (!previous || previous->parent != container) return E_INVALIDARG;
            node = previous->next;
        }
        for (; node; node = node->next) {
            if (node->type != XML_ELEMENT_NODE || !namedAs(node, tag)) continue;
            xmlAttrPtr attr = AttributeAccess::find(node, attribute);
            if (!attr) continue;
            std::string scratch;
            *equal = contentView(reinterpret_cast<xmlNodePtr>(attr), scratch) == value;
            if (*equal) *found = Tree::of(node)->wrap(node);
            return S_OK;
        }
        return S_FALSE;
    });
}

HRESULT Selection::selectAll(IXMLDOMNode* context, const IndexedForm& form, std::string_view value,
                             Ref<IXMLDOMNodeList>* found) {
    if (!found) return E_POINTER;
    *found = nullptr;
    return guarded([&] {
        std::vector<xmlNodePtr> nodes;
        if (!answeredByForm(context, form, value, false, &nodes))
            return context ? context->selectNodes(String(form.text(value)), found) : E_FAIL;
        std::vector<Ref<IXMLDOMNode>> wrapped;
        wrapped.reserve(nodes.size());
        for (xmlNodePtr n : nodes)
            if (Ref<IXMLDOMNode> object = Tree::of(n)->wrap(n)) wrapped.push_back(object);
        *found = makeObject<NodeList>(std::move(wrapped));
        return S_OK;
    });
}

} // namespace qvr::dom
