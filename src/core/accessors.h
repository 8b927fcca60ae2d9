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

#include <cstdint>
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
// Key attribute property: an attribute that tells the element apart from its siblings. A null or
// empty text removes it as the clearable attribute does. Otherwise the text must pass `valid`
// (when given; else `invalidMessage` is reported), and no sibling may hold it already
// (msgDuplicateId); the element's own value passes, and so does any value while it has no parent.
HRESULT putKeyAttribute(ObjectFrame& object, const char* name, const String& value,
                        bool (*valid)(const String&) = nullptr, Msg invalidMessage = {}) noexcept;
// The same for a key that is never removed: an empty text is a value like any other, checked
// and stored.
HRESULT putUniqueAttribute(ObjectFrame& object, const char* name, const String& value,
                           bool (*valid)(const String&) = nullptr,
                           Msg invalidMessage = {}) noexcept;
// Numbered attribute property: the attribute holds one of `texts` and reads as its index. A text
// that matches none (compared exactly) reads as `unknown`, or without one as the last index; an
// absent attribute gives S_FALSE and leaves the number alone. Setting an index outside `texts` is
// E_INVALIDARG, and writes nothing.
HRESULT getNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                             std::int32_t unknown, std::int32_t* number) noexcept;
inline HRESULT getNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                                    std::int32_t* number) noexcept {
    return getNumberedAttribute(object, name, texts, static_cast<std::int32_t>(texts.size()) - 1,
                                number);
}
template <class Enum>
HRESULT getNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts, Enum unknown,
                             Enum* value) noexcept {
    std::int32_t number = 0;
    HRESULT hr = getNumberedAttribute(object, name, texts, unknown, value ? &number : nullptr);
    if (hr == S_OK) *value = static_cast<Enum>(number);
    return hr;
}
template <class Enum>
HRESULT getNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                             Enum* value) noexcept {
    return getNumberedAttribute(
        object, name, texts, static_cast<Enum>(static_cast<std::int32_t>(texts.size()) - 1), value);
}
HRESULT putNumberedAttribute(ObjectFrame& object, const char* name, ChildNames texts,
                             std::int32_t number) noexcept;
// As putNumberedAttribute, but the number `absent` stands for no attribute: setting it removes
// the attribute (firing only when there was one), and its text is never written.
HRESULT putNumberedAttributeOrRemove(ObjectFrame& object, const char* name, ChildNames texts,
                                     std::int32_t number, std::int32_t absent) noexcept;
// Whether `number` is the index of one of `texts`.
constexpr bool namesNumber(ChildNames texts, std::int32_t number) {
    return number >= 0 && static_cast<std::size_t>(number) < texts.size();
}
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

// File-reference attribute property: the attribute in the same form as the reference text. A
// null text is E_INVALIDARG.
HRESULT getReferenceAttribute(ObjectFrame& object, const char* name, String* text) noexcept;
HRESULT putReferenceAttribute(ObjectFrame& object, const char* name, const String& text) noexcept;
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

// Coded child-text property: a child that holds a text and, in `isoCountryCode`, the code of its
// country. Read: absent child gives S_FALSE; a child without code hands out its text and answers
// S_FALSE. `code` may be null. Write: a code of the wrong form reports msgBadCountryCode and
// changes nothing; a missing child is made with both and placed ahead of the first of `followers`
// that exists, or at the end.
HRESULT getCodedChildText(ObjectFrame& object, const char* child, String* code,
                          String* text) noexcept;
HRESULT putCodedChildText(ObjectFrame& object, const char* child, const String& code,
                          const String& text, ChildNames followers) noexcept;

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

// Date child property: the child's text read as a date under the user's locale. Absent:
// S_FALSE; a text that is no date: the conversion's status; `date` is written only at S_OK.
HRESULT getDateChild(ObjectFrame& object, const char* child, Variant* date) noexcept;
// Stores the value's text under the user's locale, making the child ahead of the first of
// `followers` that exists when there is none. An empty or missing value removes the child; when
// there is none, nothing happens and nothing fires.
HRESULT putDateChild(ObjectFrame& object, const char* child, const Variant& date,
                     ChildNames followers) noexcept;

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
// Roots place their singletons the same way (lastPresentChild).
HRESULT putSingleton(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                     ChildNames predecessors) noexcept;
// A singleton that, once set, can be replaced but not removed: null gives E_POINTER.
HRESULT putRequiredSingleton(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                             ChildNames predecessors) noexcept;
// The same for a class with a child order: the predecessors are the names ahead of `child`.
inline HRESULT putSingletonInOrder(ObjectFrame& object, const char* child, IQVRCatalogObject* value,
                                   ChildNames order) noexcept {
    return putSingleton(object, child, value, namesBefore(order, child));
}

// The last of `names` that stands as a child of `element`, or `fallback` when none does.
const char* lastPresentChild(IXMLDOMElement* element, ChildNames names, const char* fallback);

} // namespace accessors
} // namespace qvr
