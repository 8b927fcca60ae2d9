// The property operations that the element classes are made of. A class names the pattern, the
// attribute or child, and where the pattern has one, the list of neighbours:
//
//   HRESULT get_name(String* v) override { return accessors::getAttribute(*this, "name", v); }
//   HRESULT putref_link(IQVRCatalogObject* o) override {
//       return accessors::putSingleton(*this, "Link", o, namesBefore(groupOrder, "Link"));
//   }
//
// Common to all: a null result pointer gives E_POINTER; an object without element reports
// msgObjectNotInitialized with E_FAIL; a failing DOM step is returned as it stands; a setter fires
// qvrEventObjectChanged with the object as source and subject, after the change and only if it
// succeeded. Every function here is noexcept: exceptions become statuses.
#pragma once

#include <span>
#include <string_view>

#include <qvr/object.h>

#include "core/object_frame.h"

namespace qvr {

// An ordered list of child names, as a class's child order or a pattern's neighbours.
using ChildNames = std::span<const char* const>;

// The names that stand before `name` in `order` (all of them if `name` is not there).
constexpr ChildNames namesBefore(ChildNames order, std::string_view name) {
    std::size_t n = 0;
    while (n < order.size() && name != order[n]) ++n;
    return order.first(n);
}
// The names that stand after `name` in `order`.
constexpr ChildNames namesAfter(ChildNames order, std::string_view name) {
    const std::size_t before = namesBefore(order, name).size();
    return before < order.size() ? order.subspan(before + 1) : ChildNames();
}

namespace accessors {

// Attribute property. Absent: S_FALSE and `value` not written. Setting a null text writes "".
HRESULT getAttribute(ObjectFrame& object, const char* name, String* value) noexcept;
HRESULT putAttribute(ObjectFrame& object, const char* name, const String& value) noexcept;
// Clearable attribute property: a null or empty text removes the attribute; removing one that
// is not there does nothing and fires nothing.
HRESULT putClearableAttribute(ObjectFrame& object, const char* name, const String& value) noexcept;
// A flag attribute of "1" and "0". Reading sets true first: absent gives S_FALSE and true. Only
// VARIANT_TRUE (-1) writes "1"; any other value writes "0".
HRESULT getFlag(ObjectFrame& object, const char* name, VARIANT_BOOL* value) noexcept;
HRESULT putFlag(ObjectFrame& object, const char* name, VARIANT_BOOL value) noexcept;

// Own-text property: the text of the element itself.
HRESULT getOwnText(ObjectFrame& object, String* text) noexcept;
HRESULT putOwnText(ObjectFrame& object, const String& text) noexcept;

// File-reference text property: the element's text in the form a document stores for a file (a
// URL as it stands, a relative path with forward slashes, an absolute path as a file URL),
// converted again on reading.
HRESULT getReferenceText(ObjectFrame& object, String* text) noexcept;
HRESULT putReferenceText(ObjectFrame& object, const String& text) noexcept;

// Child-text property, read: absent child gives S_FALSE and `text` not written.
HRESULT getChildText(ObjectFrame& object, const char* child, String* text) noexcept;
// Sets the text of an existing child only: without one, S_FALSE and no event.
HRESULT putExistingChildText(ObjectFrame& object, const char* child, const String& text) noexcept;
// Ordered child-text property: a missing child is made and placed ahead of the first of
// `followers` that exists, or at the end. An empty text makes an empty child.
HRESULT putOrderedChildText(ObjectFrame& object, const char* child, const String& text,
                            ChildNames followers) noexcept;
// Removable child-text property: as ordered, but an empty text removes the child. The event
// fires also when nothing was done.
HRESULT putRemovableChildText(ObjectFrame& object, const char* child, const String& text,
                              ChildNames followers) noexcept;

// The first node that `xpath` selects below `element`, wrapped with `catalog` and `parent` and
// asked for I. Nothing selected: the selection's status (S_FALSE) and null.
HRESULT wrapSelected(IXMLDOMElement* element, const char* xpath, IQVRCatalogObject* catalog,
                     IQVRCatalogObject* parent, Ref<IQVRCatalogObject>* object);
template <class I>
HRESULT wrapSelected(IXMLDOMElement* element, const char* xpath, IQVRCatalogObject* catalog,
                     IQVRCatalogObject* parent, Ref<I>* object) {
    *object = nullptr;
    Ref<IQVRCatalogObject> found;
    HRESULT hr = wrapSelected(element, xpath, catalog, parent, &found);
    if (hr != S_OK) return hr;
    *object = query<I>(found);
    return *object ? S_OK : E_NOINTERFACE;
}

// Singleton property: the child `child` wrapped with this object as parent; absent: S_FALSE and
// null.
HRESULT getSingleton(ObjectFrame& object, const char* child,
                     Ref<IQVRCatalogObject>* value) noexcept;
template <class I>
HRESULT getSingleton(ObjectFrame& object, const char* child, Ref<I>* value) noexcept {
    if (!value) return E_POINTER;
    *value = nullptr;
    Ref<IQVRCatalogObject> found;
    HRESULT hr = getSingleton(object, child, &found);
    if (hr != S_OK) return hr;
    *value = query<I>(found);
    return *value ? S_OK : E_NOINTERFACE;
}
// Sets, replaces or (with null) removes the child `child`. A new child lands right behind the
// last of `predecessors` that exists, or first. The event fires also when nothing was done.
HRESULT putSingleton(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                     ChildNames predecessors) noexcept;

} // namespace accessors
} // namespace qvr
