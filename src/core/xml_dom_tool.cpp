#include "core/xml_dom_tool.h"

#include <cstdio>
#include <string>

#include <qvr/content.h>

#include "content/part.h"
#include "core/event_firing.h"
#include "core/ids.h"
#include "core/object_factory.h"
#include "core/value_selection.h"
#include "platform/com/cookie_table.h"
#include "platform/com/messages.h"
#include "transfer/object_vector.h"

namespace qvr {
namespace {

HRESULT readCookie(std::uint32_t cookie, Ref<IQVRCatalogObject>* object) {
    return CookieTable::instance().get(cookie, object);
}

// Links a child that has just been placed: its catalog, and its parent. Their statuses are of no
// consequence to the insertion, which has happened.
void linkChild(IQVRCatalogObject* child, IQVRCatalogObject* catalog, IQVRCatalogObject* parent) {
    child->putref_catalog(catalog);
    child->putref_parentNode(parent);
}

} // namespace

CXMLDOMTool::CXMLDOMTool(IXMLDOMNode* node) : node_(node) {
    // A document has no owner document: it is its own, so that a tool around it can make
    // elements and read its errors. (Asked in this order, the common case costs no cast.)
    if (node_ && node_->get_ownerDocument(&ownerDocument_) != S_OK)
        ownerDocument_ = query<IXMLDOMDocument>(node);
}

CXMLDOMTool CXMLDOMTool::fromCookie(std::uint32_t cookie) {
    CXMLDOMTool tool;
    if (cookie == 0) return tool;
    Ref<IQVRCatalogObject> object;
    if (readCookie(cookie, &object) != S_OK) return tool;
    Ref<IXMLDOMElement> element;
    if (FAILED(object->get_domNode(&element)) || !element) return tool;
    return CXMLDOMTool(element);
}

// --- Insertion and removal -------------------------------------------------------------------

HRESULT CXMLDOMTool::insertChildObject(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                       IQVRCatalogObject* newChild, const Variant& position,
                                       Ref<IQVRCatalogObject>* inserted, const String& keyAttribute,
                                       const String& childSelection) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return insertChildObjectDirect(catalog, parent, newChild, position, inserted, keyAttribute,
                                   childSelection);
}

HRESULT CXMLDOMTool::insertChildObjectDirect(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                             IQVRCatalogObject* newChild, const Variant& position,
                                             Ref<IQVRCatalogObject>* inserted,
                                             const String& keyAttribute,
                                             const String& childSelection) {
    if (!catalog || !parent || !newChild) return E_INVALIDARG;
    if (!inserted) return E_POINTER;
    *inserted = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> node;
    HRESULT hr = newChild->get_domNode(&node);
    if (FAILED(hr)) return hr;
    if (isForeignNode(node))
        return insertProxyChild(catalog, parent, newChild, position, inserted, keyAttribute,
                                childSelection);
    if ((hr = checkUniqueAttribute(node, keyAttribute, String())) != S_OK) return hr;
    Ref<IXMLDOMNode> reference;
    if ((hr = resolveInsertPosition(position, keyAttribute, childSelection, &reference)) != S_OK)
        return hr;
    if (FAILED(hr = node_->insertBefore(node, reference, nullptr))) return hr;
    linkChild(newChild, catalog, parent);
    *inserted = newChild; // the caller's object itself: insertion makes no new wrapper
    return S_OK;
}

HRESULT CXMLDOMTool::removeChildObject(IQVRCatalogObject* catalog, IQVRCatalogObject* child,
                                       Ref<IQVRCatalogObject>* removed) {
    if (!child) return E_POINTER;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> node;
    HRESULT hr = child->get_domNode(&node);
    if (FAILED(hr)) return hr;
    if (FAILED(hr = node_->removeChild(node, nullptr))) return hr;
    // The new wrapper keeps naming the old parent: nothing clears a parent link on removal.
    Ref<IQVRCatalogObject> parent;
    child->get_parentNode(&parent);
    Ref<IQVRCatalogObject> wrapper;
    hr = CXMLDOMTool(node).createObject(catalog, parent, &wrapper);
    if (removed) *removed = std::move(wrapper);
    return hr;
}

HRESULT CXMLDOMTool::removeChildFromCookie(std::uint32_t catalogCookie, IQVRCatalogObject* child,
                                           Ref<IQVRCatalogObject>* removed) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return removeChildObject(catalog, child, removed);
}

HRESULT CXMLDOMTool::insertableNode(IQVRCatalogObject* child, Ref<IXMLDOMNode>* node) {
    Ref<IXMLDOMElement> element;
    HRESULT hr = child->get_domNode(&element);
    if (FAILED(hr)) return hr;
    if (!isForeignNode(element)) {
        *node = element;
        return S_OK;
    }
    Ref<IXMLDOMElement> copy;
    hr = CXMLDOMTool(element).importNode(&copy);
    *node = copy;
    return hr;
}

HRESULT CXMLDOMTool::replaceSingleton(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                      const String& xpath, IQVRCatalogObject* newChild,
                                      Ref<IQVRCatalogObject>* oldChild) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return replaceSingletonDirect(catalog, parent, xpath, newChild, oldChild);
}

HRESULT CXMLDOMTool::replaceSingletonDirect(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                            const String& xpath, IQVRCatalogObject* newChild,
                                            Ref<IQVRCatalogObject>* oldChild) {
    if (!catalog || !newChild || !oldChild) return E_POINTER;
    HRESULT hr;
    *oldChild = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMNode> node, old;
    if (FAILED(hr = insertableNode(newChild, &node))) return hr;
    if ((hr = node_->selectSingleNode(xpath, &old)) != S_OK) return hr;
    if (FAILED(hr = node_->replaceChild(node, old, nullptr))) return hr;
    if ((hr = CXMLDOMTool(old).createObject(catalog, parent, oldChild)) != S_OK) return hr;
    // The newcomer takes the old child's place and its parent link; the old child leaves
    // without parent. The model clears a parent link nowhere else.
    Ref<IQVRCatalogObject> oldParent;
    (*oldChild)->get_parentNode(&oldParent);
    newChild->putref_parentNode(oldParent);
    newChild->putref_catalog(catalog);
    (*oldChild)->putref_parentNode(nullptr);
    return S_OK;
}

HRESULT CXMLDOMTool::insertSingletonAfter(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                          const String& xpath, IQVRCatalogObject* newChild,
                                          Ref<IQVRCatalogObject>* inserted) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return placeSingleton(catalog, parent, &xpath, newChild, inserted);
}

HRESULT CXMLDOMTool::insertSingletonAfterDirect(IQVRCatalogObject* catalog,
                                                IQVRCatalogObject* parent, const String& xpath,
                                                IQVRCatalogObject* newChild,
                                                Ref<IQVRCatalogObject>* inserted) {
    return placeSingleton(catalog, parent, &xpath, newChild, inserted);
}

HRESULT CXMLDOMTool::insertSingletonFirst(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                          IQVRCatalogObject* newChild,
                                          Ref<IQVRCatalogObject>* inserted) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return placeSingleton(catalog, parent, nullptr, newChild, inserted);
}

HRESULT CXMLDOMTool::placeSingleton(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                    const String* predecessor, IQVRCatalogObject* newChild,
                                    Ref<IQVRCatalogObject>* inserted) {
    if (!catalog || !parent || !newChild || !inserted) return E_POINTER;
    *inserted = nullptr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMNode> node, found, reference;
    HRESULT hr = insertableNode(newChild, &node);
    if (FAILED(hr)) return hr;
    // Behind the predecessor (which may be last: append), or first when there is none.
    if (predecessor && node_->selectSingleNode(*predecessor, &found) == S_OK)
        found->get_nextSibling(&reference);
    else
        node_->get_firstChild(&reference);
    if (FAILED(hr = node_->insertBefore(node, reference, nullptr))) return hr;
    linkChild(newChild, catalog, parent);
    *inserted = newChild;
    return S_OK;
}

HRESULT CXMLDOMTool::selectObjectList(IQVRCatalogObject* catalog, IQVRCatalogObject* owner,
                                      const String& xpath, Ref<IQVRCatalogObjectList>* list) {
    if (!list) return E_POINTER;
    *list = nullptr;
    if (!node_) return E_FAIL;
    Ref<CQVRCatalogObjectVector> vector = makeObject<CQVRCatalogObjectVector>(owner);
    *list = vector.get();
    // Filled before it listens: the owner, whose get_childNodes this is, ignores the list's
    // insertions while it builds, so the list takes each item in by itself.
    Ref<IXMLDOMNodeList> nodes;
    std::int32_t length = 0;
    HRESULT hr = node_->selectNodes(xpath, &nodes);
    if (SUCCEEDED(hr)) hr = nodes->get_length(&length);
    // A refused item is passed over; the status of the last item is the fill's.
    for (std::int32_t i = 0; SUCCEEDED(hr) && i < length;) {
        Ref<IXMLDOMNode> item;
        Ref<IQVRCatalogObject> object;
        nodes->get_item(i++, &item);
        HRESULT itemStatus = CXMLDOMTool(item).createObject(catalog, owner, &object);
        VARIANT_BOOL done;
        if (itemStatus == S_OK) itemStatus = vector->appendChild(object, &done);
        if (i == length) hr = itemStatus;
    }
    if (owner) {
        Ref<IQVRCatalogObject> catalogOfOwner, root;
        if (SUCCEEDED(owner->get_catalog(&catalogOfOwner)) && catalogOfOwner)
            catalogOfOwner->get_catalog(&root);
        vector->connect(root);
    }
    return hr;
}

HRESULT CXMLDOMTool::resolveInsertPosition(const Variant& position, const String& keyAttribute,
                                           const String& childSelection,
                                           Ref<IXMLDOMNode>* reference) {
    if (!reference) return E_POINTER;
    *reference = nullptr;
    switch (position.vt()) {
    case VT_EMPTY:
    case VT_ERROR: return S_OK; // left out: append
    case VT_I2:
    case VT_I4: {
        // One-based among the selected children; an index that names no child (0, or past
        // the end) appends.
        const std::int32_t index = position.vt() == VT_I2 ? position.i2() : position.i4();
        if (!node_) return E_FAIL;
        Ref<IXMLDOMNodeList> children;
        HRESULT hr = node_->selectNodes(childSelection, &children);
        if (FAILED(hr)) return hr;
        Ref<IXMLDOMNode> item;
        if (index >= 1) children->get_item(index - 1, &item);
        *reference = std::move(item);
        return S_OK;
    }
    case VT_BSTR:
        // A text that names no child answers S_FALSE, and the caller inserts nothing.
        if (!node_) return E_FAIL;
        return selectOneWithValue(node_, std::string("*[@") + keyAttribute.str() + " = '",
                                  position.str(), "']", reference);
    case VT_DISPATCH:
    case VT_UNKNOWN: {
        Ref<IQVRCatalogObject> object = query<IQVRCatalogObject>(position.object());
        if (!object) return position.object() ? E_NOINTERFACE : E_INVALIDARG;
        Ref<IXMLDOMElement> element;
        HRESULT hr = object->get_domNode(&element);
        *reference = element;
        return hr;
    }
    default: return E_UNEXPECTED;
    }
}

HRESULT CXMLDOMTool::checkUniqueAttribute(IXMLDOMElement* element, const String& attribute,
                                          const String& wanted) {
    String present;
    HRESULT hr = element->getAttribute(attribute, &present);
    if (hr != S_OK && hr != S_FALSE) return hr;
    String value = wanted;
    if (wanted.isNull()) {
        if (hr == S_FALSE || present.isEmpty()) return S_OK;
        value = present;
    } else if (hr == S_OK && wanted == present) {
        return S_OK; // no change
    }
    if (!node_) return S_OK; // no parent, no siblings
    Ref<IXMLDOMNodeList> same;
    if (selectAllWithValue(node_, std::string("*[@") + attribute.str() + "='", value, "']",
                           &same) != S_OK)
        return S_OK;
    std::int32_t count = 0;
    same->get_length(&count);
    return count >= 1 ? QVR_E_DUPLICATE : S_OK;
}

HRESULT CXMLDOMTool::containsId(IQVRCatalogObject* object, VARIANT_BOOL* contained) {
    if (!contained) return E_POINTER;
    *contained = VARIANT_FALSE;
    if (!object) return E_INVALIDARG;
    String key;
    HRESULT hr = object->get_key(&key);
    if (FAILED(hr)) return hr;
    if (!node_) return E_FAIL;
    Ref<IXMLDOMNode> found;
    hr = selectOneWithValue(node_, dom::forms::descendantById, key, &found);
    if (hr == S_OK) *contained = VARIANT_TRUE;
    return hr == S_FALSE ? S_OK : hr;
}

HRESULT CXMLDOMTool::regenerateIds(IQVRCatalogObject* catalog, IQVRCatalogObject* source,
                                   IQVRCatalogObject* copy) {
    Ref<IQVRCatalogObjectList> sourceList, copyList;
    HRESULT hr = source->get_childNodes(&sourceList);
    if (hr != S_OK) return hr;
    if ((hr = copy->get_childNodes(&copyList)) != S_OK) return hr;
    std::int32_t count = 0;
    if ((hr = sourceList->get_count(&count)) != S_OK) return hr;
    for (std::int32_t i = 1; i <= count && hr == S_OK; ++i) {
        Ref<IQVRCatalogObject> from, to;
        Ref<IXMLDOMElement> element;
        QVRObjectType type;
        if ((hr = sourceList->getItem(i, &from)) != S_OK) break;
        if ((hr = copyList->getItem(i, &to)) != S_OK) break;
        if ((hr = from->get_objectType(&type)) != S_OK) break;
        if (type != qvrPart && type != qvrChapter) continue; // the copy keeps what it had
        if (FAILED(hr = to->get_domNode(&element))) break;
        const String id = newGuidId();
        if ((hr = element->setAttribute("id", id)) != S_OK) break;
        if (type == qvrChapter) {
            hr = regenerateIds(catalog, from, to);
            continue;
        }
        // A part's table goes with it under the new id; nobody hears of the hand-over.
        EventFreeze freeze;
        Ref<IQVRCatalogPart> copiedPart = query<IQVRCatalogPart>(to);
        if (!copiedPart) {
            hr = E_NOINTERFACE;
            break;
        }
        copiedPart->put_tableRef("");
        hr = CQVRCatalogPart::copyTable(query<IQVRCatalogPart>(from), copiedPart, id + "T");
    }
    return hr;
}

// --- Plain elements ---------------------------------------------------------------------------

HRESULT CXMLDOMTool::appendNewElement(const String& tag, Ref<IXMLDOMElement>* element) {
    if (!element) return E_POINTER;
    *element = nullptr;
    if (!node_ || !ownerDocument_) return E_FAIL;
    Ref<IXMLDOMElement> created;
    HRESULT hr = ownerDocument_->createElement(tag, &created);
    if (hr != S_OK) return hr;
    if (FAILED(hr = node_->appendChild(created, nullptr))) return hr;
    *element = std::move(created);
    return S_OK;
}

HRESULT CXMLDOMTool::insertNode(IXMLDOMNode* node, IXMLDOMNode* reference) {
    if (!node_) return E_FAIL;
    return node_->insertBefore(node, reference, nullptr);
}

HRESULT CXMLDOMTool::removeNode(IXMLDOMNode* child) {
    if (!node_) return E_FAIL;
    return node_->removeChild(child, nullptr);
}

// --- The factory -------------------------------------------------------------------------------

HRESULT CXMLDOMTool::createObject(IQVRCatalogObject* catalog, IQVRCatalogObject* parent,
                                  Ref<IQVRCatalogObject>* object) {
    if (!node_) return E_FAIL;
    Ref<IXMLDOMElement> element = query<IXMLDOMElement>(node_);
    if (!element) return E_NOINTERFACE; // a node without a tag name
    String tag;
    HRESULT hr = element->get_tagName(&tag);
    if (FAILED(hr)) return hr;
    if (!object) return E_POINTER;
    *object = nullptr;
    const Creator create = creatorOfTag(tag.view());
    if (!create) return E_FAIL;
    if ((hr = create(ownerDocument_, node_, catalog, object)) != S_OK) return hr;
    // Setting the parent of a new wrapper must not be heard anywhere (a table reads its
    // parent's key at that moment). The object stays in the out value even if this fails.
    EventFreeze freeze;
    return (*object)->putref_parentNode(parent);
}

HRESULT CXMLDOMTool::createObjectFromCookie(std::uint32_t catalogCookie, IQVRCatalogObject* parent,
                                            Ref<IQVRCatalogObject>* object) {
    Ref<IQVRCatalogObject> catalog;
    HRESULT hr = readCookie(catalogCookie, &catalog);
    if (hr != S_OK) return hr;
    return createObject(catalog, parent, object);
}

// --- Nodes of another process ------------------------------------------------------------------

bool CXMLDOMTool::isForeignNode(IXMLDOMNode*) {
    return false;
}

HRESULT CXMLDOMTool::importNode(Ref<IXMLDOMElement>* copy) {
    if (!copy) return E_POINTER;
    *copy = nullptr;
    return E_NOTIMPL;
}

HRESULT CXMLDOMTool::insertProxyChild(IQVRCatalogObject*, IQVRCatalogObject*, IQVRCatalogObject*,
                                      const Variant&, Ref<IQVRCatalogObject>*, const String&,
                                      const String&) {
    return E_NOTIMPL;
}

// --- Texts
// ----------------------------------------------------------------------------------------

String CXMLDOMTool::parseErrorText() const {
    if (!ownerDocument_) return String("");
    Ref<IXMLDOMParseError> error;
    if (ownerDocument_->get_parseError(&error) != S_OK || !error) return String("");
    std::int32_t code = 0, filePosition = 0, line = 0, linePosition = 0;
    String reason, source, url;
    error->get_errorCode(&code);
    error->get_filepos(&filePosition);
    error->get_line(&line);
    error->get_linepos(&linePosition);
    error->get_reason(&reason);
    error->get_srcText(&source);
    error->get_url(&url);
    const std::string format(messageText(103));
    const long lineNumber = line, position = linePosition;
    const unsigned long status = static_cast<std::uint32_t>(code);
    const int length = std::snprintf(nullptr, 0, format.c_str(), reason.c_str(), url.c_str(),
                                     lineNumber, position, status, source.c_str());
    if (length < 0) return String("");
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), reason.c_str(), url.c_str(), lineNumber,
                  position, status, source.c_str());
    text.resize(static_cast<std::size_t>(length));
    return String(std::move(text));
}

} // namespace qvr
